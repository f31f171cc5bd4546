import QtQuick
import "qrc:/brimquill/Views"

// One small button for each type of clip.
Row {
    spacing: Theme.smallGap
    height: 22

    Repeater {
        model: picker.types

        Rectangle {
            id: button

            required property var modelData
            required property int index

            width: 26
            height: 22
            radius: 6
            color: modelData.active ? Theme.withAlpha(Theme.accentInk, 0.18) : hover.hovered ? Theme.field : "transparent"
            Accessible.role: Accessible.CheckBox
            Accessible.name: modelData.label
            Accessible.checked: modelData.active
            Accessible.onPressAction: picker.typeClicked(index)

            HoverHandler { id: hover }
            TapHandler { onTapped: picker.typeClicked(button.index) }

            Symbol {
                anchors.centerIn: parent
                size: 16
                name: button.modelData.symbol
                color: button.modelData.active ? Theme.accentInk : Theme.secondaryText
            }
            HelpLabel {
                visible: hover.hovered
                text: button.modelData.label
            }
        }
    }
}
