import QtQuick

// The keys of a field that mean the same in every form: saving, leaving, and those of editing that the platform's ⌘
// brings. Put it into the field's `Keys.forwardTo`.
Item {
    id: keys

    required property Item field
    required property QtObject model
    required property QtObject panel
    // Whether the field has one line: Return saves then, and line breaks that are pasted become blanks.
    property bool singleLine: true
    // Whether a text may be pasted.
    property var admits: text => true

    function paste() {
        const text = panel.pasteboardText()
        if (!admits(text))
            return
        field.remove(field.selectionStart, field.selectionEnd)
        field.insert(field.cursorPosition, singleLine ? text.replace(/[\r\n\u2028\u2029]+/g, " ") : text)
    }

    function command(key, shift) {
        switch (key) {
        case Qt.Key_S: model.save(); return true
        case Qt.Key_A: field.selectAll(); return true
        case Qt.Key_C: field.copy(); return true
        case Qt.Key_X: field.cut(); return true
        case Qt.Key_V: paste(); return true
        case Qt.Key_Z: if (shift) field.redo(); else field.undo(); return true
        }
        return false
    }

    Keys.onPressed: event => {
        const held = (event.modifiers & Qt.ControlModifier) !== 0
        if (event.key === Qt.Key_Escape) {
            model.cancel()
            event.accepted = true
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            if (singleLine || held) {
                model.save()
                event.accepted = true
            }
        } else if (event.key === Qt.Key_Insert && (event.modifiers & Qt.ShiftModifier)) {
            paste()
            event.accepted = true
        } else if (held && !(event.modifiers & Qt.AltModifier)) {
            event.accepted = command(event.key, (event.modifiers & Qt.ShiftModifier) !== 0)
        }
    }
}
