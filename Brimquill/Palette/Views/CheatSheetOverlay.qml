import QtQuick
import "qrc:/brimquill/Views"

// Every key of the palette, searchable.
FocusScope {
    id: root

    Rectangle {
        anchors.fill: parent
        color: Theme.dim
        radius: Theme.panelRadius

        PointerShield { onClicked: picker.cheatSheetOpen = false }
    }
    Rectangle {
        anchors.centerIn: parent
        width: 420
        height: root.height - 16
        radius: 20
        color: Theme.cardBody
        Accessible.role: Accessible.Dialog
        Accessible.name: heading.text

        PointerShield {}

        Text {
            id: heading

            anchors { left: parent.left; leftMargin: 20; top: parent.top; topMargin: 10 }
            text: "Keyboard Shortcuts"
            font.pixelSize: Theme.fieldSize
            font.weight: Font.DemiBold
            color: Theme.primaryText
        }
        Symbol {
            anchors { right: parent.right; rightMargin: 16; verticalCenter: heading.verticalCenter }
            size: 18
            name: "xmark.circle.fill"
            color: Theme.secondaryText

            TapHandler { onTapped: picker.cheatSheetOpen = false }
        }
        Rectangle {
            id: field

            anchors { left: parent.left; right: parent.right; top: heading.bottom; margins: 16; topMargin: 6 }
            height: 26
            radius: Theme.fieldRadius
            color: Theme.field

            Symbol {
                id: glass

                anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
                size: 14
                name: "magnifyingglass"
                color: Theme.secondaryText
            }
            PaletteTextInput {
                anchors { left: glass.right; right: parent.right; margins: 6; verticalCenter: parent.verticalCenter }
                focus: true
                text: cheatSheet.query
                Accessible.name: heading.text
                onEdited: cheatSheet.query = text
                Component.onCompleted: cheatSheet.query = ""
            }
        }
        ListView {
            readonly property int rowHeight: 20
            readonly property real room: parent.height - field.y - field.height - 16

            anchors { left: parent.left; right: parent.right; top: field.bottom; margins: 16; topMargin: 6 }
            // Whole rows only, also once it has been scrolled.
            height: Math.floor(room / rowHeight) * rowHeight
            snapMode: ListView.SnapToItem
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            model: cheatSheet.rows
            delegate: Row {
                required property var modelData

                height: ListView.view.rowHeight

                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 96
                    text: parent.modelData.chord
                    font.pixelSize: Theme.bodySize
                    color: Theme.secondaryText
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: parent.modelData.text
                    font.pixelSize: Theme.bodySize
                    color: Theme.primaryText
                }
            }
        }
    }
}
