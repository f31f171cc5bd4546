import QtQuick
import "../../Views"

// One line of a form: a symbol, a text, and what is asked for while it is empty.
Rectangle {
    id: field

    required property QtObject model
    required property QtObject panel
    property alias symbol: sign.name
    property alias placeholder: hint.text
    property alias input: input
    property alias text: input.text
    property string accessibleName
    signal edited

    height: 32
    radius: Theme.fieldRadius
    color: Theme.field
    border.width: input.activeFocus ? 2 : 0
    border.color: Theme.accentInk

    Symbol {
        id: sign
        anchors { left: parent.left; leftMargin: Theme.gap; verticalCenter: parent.verticalCenter }
        color: input.activeFocus ? Theme.accentInk : Theme.secondaryText
    }
    TextInput {
        id: input
        anchors {
            left: sign.right
            right: parent.right
            top: parent.top
            bottom: parent.bottom
            leftMargin: Theme.gap
            rightMargin: Theme.gap
        }
        verticalAlignment: TextInput.AlignVCenter
        clip: true
        font.pixelSize: Theme.fieldSize
        color: Theme.primaryText
        selectionColor: Theme.accentFill
        selectedTextColor: "white"
        selectByMouse: true
        onTextChanged: field.edited()
        Component.onCompleted: cursorPosition = length
        Keys.forwardTo: [keys]
        Accessible.role: Accessible.EditableText
        Accessible.name: field.accessibleName
        Accessible.description: field.placeholder
        cursorDelegate: Rectangle {
            width: 2
            color: Theme.accentInk
            visible: input.cursorVisible
        }

        MiddleClickGuard {}
        Text {
            id: hint
            anchors { fill: parent; leftMargin: 3 }
            visible: input.length === 0 && input.preeditText.length === 0
            font.pixelSize: Theme.fieldSize
            color: Theme.secondaryText
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }
    FormKeys {
        id: keys
        field: input
        model: field.model
        panel: field.panel
    }
}
