import QtQuick
import "qrc:/brimquill/Views"

// The strip at the top of a card: round above, straight below.
Item {
    id: root

    required property var card

    height: Theme.cardHeaderHeight
    clip: true

    Rectangle {
        width: parent.width
        height: parent.height + Theme.cardRadius
        radius: Theme.cardRadius
        color: root.card.headerFill
    }
    Text {
        anchors { left: parent.left; leftMargin: Theme.gap; right: time.left; rightMargin: Theme.smallGap; verticalCenter: parent.verticalCenter }
        text: root.card.title
        textFormat: Text.PlainText
        elide: Text.ElideRight
        maximumLineCount: 1
        font.pixelSize: Theme.titleSize
        font.weight: Font.DemiBold
        color: root.card.headerText
    }
    Text {
        id: time

        anchors { right: icon.visible ? icon.left : parent.right; rightMargin: icon.visible ? 5 : Theme.gap; verticalCenter: parent.verticalCenter }
        text: root.card.age
        font.pixelSize: Theme.bodySize
        color: root.card.headerText
    }
    Image {
        id: icon

        anchors { right: parent.right; rightMargin: 5; verticalCenter: parent.verticalCenter }
        width: 18
        height: 18
        visible: implicitWidth > 1
        source: root.card.iconSource
        sourceSize { width: 18; height: 18 }
        asynchronous: true
    }
}
