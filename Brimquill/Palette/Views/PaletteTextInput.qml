import QtQuick
import "qrc:/brimquill/Views"

// One line of text in the palette, with what it asks for while it is empty.
TextInput {
    id: input

    property alias placeholder: hint.text
    // The user changed the text.
    signal edited

    clip: true
    font.pixelSize: Theme.fieldSize
    color: Theme.primaryText
    selectionColor: Theme.accentFill
    selectedTextColor: "white"
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholder
    onTextEdited: edited()
    // The panel has the pasteboard's text at hand: asking for it here might wait for another program.
    Keys.onPressed: event => {
        if (event.matches(StandardKey.Paste)) {
            remove(selectionStart, selectionEnd)
            insert(cursorPosition, panel.pasteboardText())
            edited()
            event.accepted = true
        }
    }
    MiddleClickGuard {}
    cursorDelegate: Rectangle {
        width: 2
        color: Theme.accentInk
        visible: input.cursorVisible
    }

    Text {
        id: hint

        anchors { fill: parent; leftMargin: 3 }
        visible: input.text.length === 0 && input.preeditText.length === 0
        font.pixelSize: Theme.fieldSize
        color: Theme.secondaryText
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
