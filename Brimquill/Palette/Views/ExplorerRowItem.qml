import QtQuick
import "qrc:/brimquill/Views"

// One line of the explorer: a caption, a pinboard in its place in the tree, or a tag, type or application.
Item {
    id: row

    required property int index
    required property string type
    required property string label
    required property string place
    required property int depth
    required property int count
    required property string fill
    required property string ink
    required property bool expanded
    required property bool hasChildren
    property bool selected: false
    signal clicked
    signal disclosureClicked

    readonly property bool isHeader: type === "header"
    readonly property bool isFolder: type === "folder"
    // The tint of the selected row leaves too little contrast to the quieter one.
    readonly property color quietText: selected ? Theme.primaryText : Theme.secondaryText
    // However deep a pinboard lies, most of the line is its name's.
    readonly property int indent: Math.min(depth, 8) * 16

    height: Theme.rowHeight
    Accessible.role: isHeader ? Accessible.StaticText : isFolder ? Accessible.TreeItem : Accessible.ListItem
    Accessible.name: isHeader ? label : (place === "" ? label : place + "/" + label) + ", " + row.count
    Accessible.selectable: !isHeader
    Accessible.selected: selected
    Accessible.description: !hasChildren ? "" : expanded ? "expanded" : "collapsed"
    Accessible.onPressAction: row.clicked()

    Rectangle {
        anchors.fill: parent
        visible: !row.isHeader
        radius: 6
        color: row.selected ? Theme.withAlpha(Theme.accentInk, 0.18) : area.containsMouse ? Theme.field : "transparent"
    }
    MouseArea {
        id: area

        anchors.fill: parent
        enabled: !row.isHeader
        hoverEnabled: true
        onClicked: row.clicked()
    }

    Text {
        anchors { left: parent.left; leftMargin: Theme.gap; bottom: parent.bottom; bottomMargin: 3 }
        visible: row.isHeader
        text: row.label
        font.pixelSize: Theme.bodySize
        font.weight: Font.DemiBold
        color: Theme.secondaryText
        Accessible.ignored: true
    }

    Item {
        id: disclosure

        x: Theme.smallGap + row.indent
        width: 20
        height: parent.height
        visible: row.hasChildren
        Accessible.role: Accessible.Button
        Accessible.name: row.expanded ? "Collapse" : "Expand"
        Accessible.onPressAction: row.disclosureClicked()

        Symbol {
            anchors.centerIn: parent
            name: "chevron.right"
            color: Theme.secondaryText
            rotation: row.expanded ? 90 : 0
        }
        MouseArea {
            anchors.fill: parent
            onClicked: row.disclosureClicked()
        }
    }
    Item {
        id: mark

        x: Theme.smallGap + (row.isFolder ? row.indent + 20 : 0)
        width: row.isFolder ? 16 : 20
        height: parent.height
        visible: !row.isHeader

        Symbol {
            anchors.centerIn: parent
            visible: row.isFolder
            name: "folder.fill"
            color: Theme.dark ? row.ink : row.fill
        }
        Rectangle {
            x: 6
            y: 9
            visible: !row.isFolder
            width: 7
            height: 7
            radius: 3.5
            color: Theme.dark ? row.ink : row.fill
        }
    }
    Text {
        id: name

        readonly property int room: count.x - Theme.gap - x

        anchors { left: mark.right; leftMargin: row.isFolder ? 6 : Theme.smallGap; verticalCenter: parent.verticalCenter }
        width: Math.min(implicitWidth, room)
        visible: !row.isHeader
        text: row.label
        textFormat: Text.PlainText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        font.pixelSize: Theme.fieldSize
        color: Theme.primaryText
        Accessible.ignored: true
    }
    Text {
        anchors { left: name.right; leftMargin: Theme.gap; right: count.left; rightMargin: Theme.gap; baseline: name.baseline }
        visible: row.place !== "" && width > 40
        text: row.place
        textFormat: Text.PlainText
        elide: Text.ElideMiddle
        horizontalAlignment: Text.AlignLeft
        font.pixelSize: Theme.bodySize
        color: row.quietText
        Accessible.ignored: true
    }
    Text {
        id: count

        anchors { right: parent.right; rightMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        visible: !row.isHeader
        text: row.count
        font.pixelSize: Theme.bodySize
        color: row.quietText
        Accessible.ignored: true
    }
}
