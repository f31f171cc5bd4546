import QtQuick
import "qrc:/brimquill/Views"

// The query and the scopes.
Item {
    id: bar

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
        TextInput {
            id: query

            anchors { left: glass.right; right: parent.right; margins: Theme.gap - 2; verticalCenter: parent.verticalCenter }
            clip: true
            focus: true
            font.pixelSize: Theme.fieldSize
            color: Theme.primaryText
            selectionColor: Theme.accentFill
            selectedTextColor: "white"
            selectByMouse: true
            text: picker.searchText
            Accessible.role: Accessible.EditableText
            Accessible.name: placeholder.text
            onTextEdited: picker.searchText = text
            Keys.onPressed: event => {
                if (event.matches(StandardKey.Paste)) {
                    remove(selectionStart, selectionEnd)
                    insert(cursorPosition, panel.pasteboardText())
                    picker.searchText = text
                    event.accepted = true
                }
            }
            cursorDelegate: Rectangle {
                width: 2
                color: Theme.accentInk
                visible: query.cursorVisible
            }
        }
        Text {
            id: placeholder

            anchors.fill: query
            text: "Search text, #tags, apps…"
            visible: query.text.length === 0 && query.preeditText.length === 0
            font.pixelSize: Theme.fieldSize
            color: Theme.secondaryText
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    ListView {
        id: chips

        anchors {
            left: field.right
            leftMargin: Theme.panelPadding
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

        TapHandler { onTapped: picker.clearClicked() }
    }
}
