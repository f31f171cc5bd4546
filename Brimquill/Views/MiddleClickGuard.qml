import QtQuick

// Lies over a text field: a middle click would paste what is selected somewhere, past all that is asked of a text, and
// wait for the program that has it. None reaches the field.
MouseArea {
    anchors.fill: parent
    acceptedButtons: Qt.MiddleButton
    cursorShape: Qt.IBeamCursor
}
