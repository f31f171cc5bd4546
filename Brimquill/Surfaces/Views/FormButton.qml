import QtQuick
import "../../Views"

// A button at the foot of a form; the prominent one does what the form is for.
Rectangle {
    id: button

    property alias text: label.text
    property bool prominent: false
    signal clicked

    implicitWidth: Math.max(72, label.implicitWidth + 2 * Theme.panelPadding)
    implicitHeight: 28
    radius: Theme.fieldRadius
    color: prominent ? Theme.accentFill : hover.hovered ? Theme.fieldHovered : Theme.field
    Accessible.role: Accessible.Button
    Accessible.name: label.text
    Accessible.onPressAction: button.clicked()

    HoverHandler { id: hover }
    TapHandler { onTapped: button.clicked() }

    Rectangle {
        anchors.fill: parent
        radius: parent.radius
        visible: button.prominent && hover.hovered
        color: Theme.field
    }
    Text {
        id: label
        anchors.centerIn: parent
        textFormat: Text.PlainText
        font.pixelSize: Theme.fieldSize
        font.weight: button.prominent ? Font.DemiBold : Font.Normal
        color: button.prominent ? "white" : Theme.primaryText
        Accessible.ignored: true
    }
}
