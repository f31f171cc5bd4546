import QtQuick

// The body of a panel: rounded, with a soft shadow around it where windows may be translucent and a hairline where not.
// What is put into it lies within the body.
Item {
    id: panel

    default property alias content: body.data
    readonly property alias body: body
    property real bodyWidth: 0
    property real bodyHeight: 0
    property alias radius: surface.radius
    readonly property int margin: Theme.translucent ? Theme.shadowWidth : 0

    implicitWidth: bodyWidth
    implicitHeight: bodyHeight

    BorderImage {
        anchors.fill: parent
        visible: Theme.translucent
        source: visible ? "image://brimquill/shadow" : ""
        border {
            left: Theme.shadowWidth + Theme.panelRadius
            right: Theme.shadowWidth + Theme.panelRadius
            top: Theme.shadowWidth + Theme.panelRadius
            bottom: Theme.shadowWidth + Theme.panelRadius
        }
    }

    Rectangle {
        id: surface
        anchors.fill: parent
        anchors.margins: panel.margin
        radius: Theme.panelRadius
        color: Theme.surface
        border.width: 1
        // Where nothing shows through, a border that does would be drawn on black.
        border.color: Theme.translucent ? Theme.hairline : Theme.edge

        Item {
            id: body
            anchors.fill: parent
        }
    }
}
