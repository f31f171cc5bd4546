import QtQuick
import "../../Views"

// A clip's text.
PanelSurface {
    id: form

    required property QtObject model
    required property QtObject panel
    readonly property int inset: Theme.panelPadding + Theme.smallGap

    bodyWidth: frame.width + 2 * inset
    bodyHeight: column.implicitHeight + 2 * inset
    Accessible.role: Accessible.Dialog
    Accessible.name: "Edit Clip"

    Column {
        id: column
        x: form.inset
        y: form.inset
        spacing: Theme.gap

        FormHeader {
            width: frame.width
            height: 24
            symbol: "pencil"
            title: "Edit Clip"
        }
        Rectangle {
            id: frame
            width: 400
            height: 180
            radius: Theme.fieldRadius
            color: Theme.field

            Flickable {
                id: scroll
                anchors { fill: parent; margins: Theme.gap }
                clip: true
                contentWidth: width
                contentHeight: Math.max(height, editor.height)
                boundsBehavior: Flickable.StopAtBounds

                function reveal(place) {
                    if (place.y < contentY)
                        contentY = place.y
                    else if (place.y + place.height > contentY + height)
                        contentY = place.y + place.height - height
                }

                TextEdit {
                    id: editor
                    width: scroll.width
                    height: Math.max(scroll.height, implicitHeight)
                    focus: true
                    readOnly: !form.model.isEditable
                    textFormat: TextEdit.PlainText
                    wrapMode: form.model.hasWords ? TextEdit.Wrap : TextEdit.WrapAnywhere
                    text: form.model.text
                    font.pixelSize: Theme.fieldSize
                    color: Theme.primaryText
                    selectionColor: Theme.accentFill
                    selectedTextColor: "white"
                    selectByMouse: true
                    persistentSelection: true
                    onCursorRectangleChanged: scroll.reveal(cursorRectangle)
                    Component.onCompleted: {
                        cursorPosition = length
                        form.model.edit(textDocument)
                    }
                    Keys.forwardTo: [keys]
                    Accessible.role: Accessible.EditableText
                    Accessible.multiLine: true
                    Accessible.name: "Text"
                    cursorDelegate: Rectangle {
                        width: 2
                        color: Theme.accentInk
                        visible: editor.cursorVisible
                    }

                    MiddleClickGuard {}
                }
            }
            Text {
                anchors.centerIn: parent
                visible: !form.model.isEditable
                text: "Too long to be edited here"
                font.pixelSize: Theme.bodySize
                color: Theme.secondaryText
            }
            Rectangle {
                visible: scroll.contentHeight > scroll.height
                anchors { right: parent.right; rightMargin: 2 }
                y: Theme.gap + scroll.visibleArea.yPosition * scroll.height
                width: 4
                height: Math.max(20, scroll.visibleArea.heightRatio * scroll.height)
                radius: 2
                color: Theme.withAlpha(Theme.primaryText, 0.3)
            }
        }
        FormFooter {
            width: frame.width
            hint: form.model.status
            canSave: form.model.isEditable
            dismissLabel: "Cancel"
            onDismissed: form.model.cancel()
            onSaved: form.model.save()
        }
    }
    FormKeys {
        id: keys
        field: editor
        model: form.model
        panel: form.panel
        singleLine: false
        admits: text => form.model.admits(text)
    }
}
