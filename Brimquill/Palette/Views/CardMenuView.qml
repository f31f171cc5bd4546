import QtQuick
import "qrc:/brimquill/Views"

// The menu of a card. What lies around it waits: a click there closes the menu and does nothing else.
PointerShield {
    id: root

    required property var menu

    visible: menu.open
    // Not before the button is up: what is hidden under a pressed button gives its click away.
    onReleased: menu.close()

    Rectangle {
        id: body

        readonly property int margin: Theme.smallGap

        readonly property point at: root.mapFromItem(null, root.menu.x, root.menu.y)

        x: Math.round(Math.max(margin, Math.min(at.x, root.width - width - margin)))
        y: Math.round(Math.max(margin, Math.min(at.y, root.height - height - margin)))
        width: 216
        height: rows.height + 2 * margin
        radius: Theme.menuRadius
        color: Theme.cardBody
        border { width: 1; color: Theme.edge }
        Accessible.role: Accessible.PopupMenu
        Accessible.name: "Clip"

        // Between the rows a click is no outside click.
        PointerShield {}

        Column {
            id: rows

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: body.margin }

            Repeater {
                model: root.menu.rows

                Item {
                    id: row

                    required property var modelData
                    required property int index
                    readonly property bool isCurrent: root.menu.current === index

                    width: rows.width
                    height: 24 + (modelData.startsGroup ? 9 : 0)

                    Rectangle {
                        anchors { left: parent.left; right: parent.right; margins: Theme.gap }
                        y: 4
                        height: 1
                        color: Theme.hairline
                        visible: row.modelData.startsGroup
                    }
                    Rectangle {
                        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
                        height: 24
                        radius: 6
                        color: row.isCurrent ? Theme.accentFill : "transparent"
                        Accessible.role: Accessible.MenuItem
                        Accessible.name: row.modelData.title
                        Accessible.focusable: true
                        Accessible.focused: row.isCurrent
                        Accessible.onPressAction: root.menu.activate(row.index)

                        Text {
                            anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
                            text: row.modelData.title
                            font.pixelSize: Theme.fieldSize
                            color: row.isCurrent ? "white"
                                   : row.modelData.destructive ? Theme.destructive : Theme.primaryText
                            Accessible.ignored: true
                        }
                        MouseArea {
                            anchors.fill: parent
                            hoverEnabled: true
                            acceptedButtons: root.acceptedButtons
                            onPositionChanged: root.menu.current = row.index
                            onExited: if (row.isCurrent) root.menu.current = -1
                            onClicked: root.menu.activate(row.index)
                        }
                    }
                }
            }
        }
    }
}
