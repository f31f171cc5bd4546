import QtQuick
import "qrc:/brimquill/Views"

// The query and the scopes.
Item {
    id: bar

    readonly property Item filterButton: filter

    function takeFocus() {
        query.forceActiveFocus()
    }

    height: Theme.barHeight

    Rectangle {
        id: field

        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        width: Math.max(150, Math.min(300, bar.width * 0.28))
        height: 28
        radius: Theme.fieldRadius
        color: Theme.field

        Symbol {
            id: glass

            anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
            name: "magnifyingglass"
            color: Theme.secondaryText
        }
        PaletteTextInput {
            id: query

            anchors { left: glass.right; right: parent.right; margins: Theme.gap - 2; verticalCenter: parent.verticalCenter }
            focus: true
            placeholder: "Search text, #tags, apps…"
            text: picker.searchText
            onEdited: picker.searchText = text
        }
    }

    Rectangle {
        id: filter

        anchors { left: field.right; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        width: 28
        height: 28
        radius: Theme.fieldRadius
        color: picker.explorer.open ? Theme.withAlpha(Theme.accentInk, 0.18) : filterHover.hovered ? Theme.field : "transparent"
        Accessible.role: Accessible.Button
        Accessible.name: "Filter"
        Accessible.checkable: true
        Accessible.checked: picker.explorer.open
        Accessible.onPressAction: picker.explorer.open = !picker.explorer.open

        HoverHandler { id: filterHover }
        TapHandler { onTapped: picker.explorer.open = !picker.explorer.open }

        Symbol {
            anchors.centerIn: parent
            size: 18
            name: "line.3.horizontal.decrease.circle" + (picker.explorer.open ? ".fill" : "")
            color: picker.explorer.open ? Theme.accentInk : Theme.secondaryText
        }
        HelpLabel {
            visible: filterHover.hovered && !picker.explorer.open
            text: "Filter"
        }
    }

    ListView {
        id: chips

        anchors {
            left: filter.right
            leftMargin: Theme.gap
            right: clear.visible ? clear.left : parent.right
            rightMargin: Theme.gap
            verticalCenter: parent.verticalCenter
        }
        height: 24
        orientation: ListView.Horizontal
        spacing: 6
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: picker.chips
        delegate: FilterChip {
            required property var modelData
            required property int index

            chip: modelData
            onTapped: picker.chipClicked(index)
            onCleared: picker.chipCleared()
        }
        onModelChanged: {
            const active = picker.chips.findIndex(chip => chip.active)
            if (active >= 0)
                positionViewAtIndex(active, ListView.Contain)
        }
    }

    Symbol {
        id: clear

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        size: 18
        name: "xmark.circle.fill"
        visible: picker.filtered
        color: Theme.secondaryText
        Accessible.ignored: false
        Accessible.role: Accessible.Button
        Accessible.name: "Clear"
        Accessible.onPressAction: picker.clearClicked()

        HoverHandler { id: clearHover }
        TapHandler { onTapped: picker.clearClicked() }

        HelpLabel {
            anchors { left: undefined; right: parent.right }
            visible: clearHover.hovered
            text: "Clear"
        }
    }
}
