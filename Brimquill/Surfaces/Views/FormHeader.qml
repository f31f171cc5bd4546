import QtQuick
import "../../Views"

// What a form is about: its title and, quieter, the clip it is for.
Item {
    id: header

    property alias symbol: sign.name
    property alias title: title.text
    property alias detail: detail.text

    height: 20

    Symbol {
        id: sign
        anchors.verticalCenter: parent.verticalCenter
        size: 18
        color: Theme.accentInk
    }
    Text {
        id: title
        anchors { left: sign.right; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        textFormat: Text.PlainText
        font.pixelSize: Theme.fieldSize
        font.weight: Font.DemiBold
        color: Theme.primaryText
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Text {
        id: detail
        anchors {
            left: title.right
            leftMargin: Theme.panelPadding
            right: parent.right
            baseline: title.baseline
        }
        textFormat: Text.PlainText
        font.pixelSize: Theme.bodySize
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignRight
        maximumLineCount: 1
        elide: Text.ElideRight
    }
}
