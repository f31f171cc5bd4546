import QtQuick
import "qrc:/brimquill/Views"

// One scope.
Rectangle {
    id: root

    required property var chip
    readonly property color tone: chip.active ? chip.onFill : Theme.dark ? chip.ink : chip.fill
    signal tapped
    signal cleared

    width: Math.min(content.implicitWidth + 20, 220)
    height: 24
    radius: height / 2
    color: chip.active ? chip.fill : hover.hovered ? Theme.fieldHovered : Theme.field
    Accessible.role: Accessible.RadioButton
    Accessible.name: chip.label
    Accessible.checked: chip.active
    Accessible.onPressAction: root.tapped()

    HoverHandler { id: hover }
    TapHandler { onTapped: root.tapped() }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: Theme.smallGap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.chip.topTag
            size: 12
            name: "star.fill"
            color: root.tone
        }
        // The colour is told beside the words: small words in it would be hard to read.
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            visible: !root.chip.active && !root.chip.topTag
            width: 8
            height: 8
            radius: 4
            color: root.tone
        }
        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, 160)
            text: root.chip.label
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            font.pixelSize: Theme.titleSize
            font.weight: root.chip.active ? Font.DemiBold : Font.Normal
            color: root.chip.active ? root.chip.onFill : Theme.primaryText
            Accessible.ignored: true
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.chip.clearable
            size: 14
            name: "xmark.circle.fill"
            color: label.color

            TapHandler { onTapped: root.cleared() }
        }
    }
}
