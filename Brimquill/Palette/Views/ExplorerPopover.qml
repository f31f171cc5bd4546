import QtQuick
import "qrc:/brimquill/Views"

// Everything that a scope can be: pinboards, tags, types and applications, to be narrowed down by typing.
FocusScope {
    id: root

    readonly property var explorer: picker.explorer

    // Whole rows, as many as stand above the hints.
    readonly property int wholeRows: 7

    width: 340
    height: Theme.barHeight + 1 + 2 * Theme.smallGap + wholeRows * (Theme.rowHeight + list.spacing) - list.spacing
    Accessible.role: Accessible.Dialog
    Accessible.name: "Filter"

    function takeFocus() {
        field.forceActiveFocus()
    }

    BorderImage {
        anchors { fill: parent; margins: -Theme.shadowWidth }
        source: "image://brimquill/shadow"
        border {
            left: Theme.shadowWidth + Theme.panelRadius
            right: Theme.shadowWidth + Theme.panelRadius
            top: Theme.shadowWidth + Theme.panelRadius
            bottom: Theme.shadowWidth + Theme.panelRadius
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.cardBody
        border.color: Theme.edge

        // The cards below it are out of the pointer's reach.
        PointerShield {}
    }
    Symbol {
        id: glass

        anchors { left: parent.left; leftMargin: Theme.panelPadding; verticalCenter: field.verticalCenter }
        name: "magnifyingglass"
        color: Theme.secondaryText
    }
    PaletteTextInput {
        id: field

        anchors { left: glass.right; leftMargin: 6; right: parent.right; rightMargin: Theme.panelPadding; top: parent.top }
        height: Theme.barHeight
        verticalAlignment: TextInput.AlignVCenter
        focus: true
        placeholder: "Filter pinboards & tags…  (/ or # to scope)"
        text: root.explorer.search
        onEdited: root.explorer.search = text
    }
    Rectangle {
        anchors { left: parent.left; right: parent.right; top: field.bottom; leftMargin: 1; rightMargin: 1 }
        height: 1
        color: Theme.hairline
    }
    ListView {
        id: list

        anchors {
            left: parent.left
            right: parent.right
            top: field.bottom
            bottom: parent.bottom
            margins: Theme.smallGap
            topMargin: Theme.smallGap + 1
        }
        spacing: 1
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        snapMode: ListView.SnapToItem
        model: root.explorer.rows
        Accessible.role: Accessible.List
        Accessible.name: "Pinboards, tags, types and apps"
        delegate: ExplorerRowItem {
            width: ListView.view.width
            selected: !isHeader && index === root.explorer.selection
            onClicked: root.explorer.rowClicked(index)
            onDisclosureClicked: root.explorer.disclosureClicked(index)
        }
    }
    Text {
        anchors.centerIn: list
        visible: list.count === 0
        text: "No pinboards or tags yet"
        font.pixelSize: Theme.bodySize
        color: Theme.secondaryText
    }

    onVisibleChanged: {
        if (visible)
            list.positionViewAtBeginning()
    }
    Connections {
        target: root.explorer
        // The first row is the chosen one then.
        function onSearchChanged() {
            list.positionViewAtBeginning()
        }
        function onSelectionChanged() {
            // With the line above, which may be the caption.
            list.positionViewAtIndex(Math.max(0, root.explorer.selection - 1), ListView.Contain)
            list.positionViewAtIndex(root.explorer.selection, ListView.Contain)
        }
    }
}
