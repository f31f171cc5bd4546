import QtQuick

// Keeps the pointer away from what lies below: no click, drag, wheel or hover gets through.
MouseArea {
    anchors.fill: parent
    hoverEnabled: true
    acceptedButtons: Qt.AllButtons
    onWheel: wheel => wheel.accepted = true
}
