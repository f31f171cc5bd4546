import QtQuick
import "../../Views"

// The foot of a form: a quiet word, and the buttons.
Item {
    id: footer

    property alias hint: hint.text
    property alias dismissLabel: dismiss.text
    property alias canSave: save.visible
    signal dismissed
    signal saved

    height: 32

    Text {
        id: hint
        anchors { left: parent.left; right: buttons.left; rightMargin: Theme.gap; verticalCenter: buttons.verticalCenter }
        textFormat: Text.PlainText
        font.pixelSize: Theme.hintSize
        color: Theme.secondaryText
        elide: Text.ElideRight
    }
    Row {
        id: buttons
        anchors { right: parent.right; bottom: parent.bottom }
        spacing: Theme.gap

        FormButton {
            id: dismiss
            onClicked: footer.dismissed()
        }
        FormButton {
            id: save
            text: "Save"
            prominent: true
            onClicked: footer.saved()
        }
    }
}
