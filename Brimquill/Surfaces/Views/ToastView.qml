import QtQuick
import "../../Views"

// The confirmation of a capture: a picture or a symbol, what was captured, where it came from, and how many in a row.
PanelSurface {
    id: toast

    required property QtObject model
    // What a toast that leaves goes on saying while it slides out.
    property url image
    property string title
    property string subtitle
    property string symbol

    bodyWidth: 340
    bodyHeight: 74
    transformOrigin: Item.Center

    function take() {
        if (!toast.model.shown)
            return;
        image = toast.model.image;
        title = toast.model.title;
        subtitle = toast.model.subtitle;
        symbol = toast.model.symbol;
    }
    Component.onCompleted: take()
    Connections {
        target: toast.model
        function onContentChanged() { toast.take(); }
        function onPulseChanged() { if (Theme.translucent && !Theme.reduceMotion) beat.restart(); }
    }

    opacity: toast.model.shown || !Theme.translucent ? 1 : 0
    transform: Translate {
        y: toast.model.shown || !Theme.translucent ? 0 : 12
        Behavior on y {
            enabled: !Theme.reduceMotion
            NumberAnimation { duration: Theme.moveDuration; easing.type: Easing.OutCubic }
        }
    }
    Behavior on opacity {
        enabled: !Theme.reduceMotion
        NumberAnimation { duration: Theme.moveDuration }
    }
    SequentialAnimation {
        id: beat
        NumberAnimation { target: toast; property: "scale"; to: 1.03; duration: 90; easing.type: Easing.OutQuad }
        NumberAnimation { target: toast; property: "scale"; to: 1; duration: 150; easing.type: Easing.InOutQuad }
    }

    HoverHandler { onHoveredChanged: toast.model.hovered = hovered }
    TapHandler { onTapped: toast.model.open() }

    Rectangle {
        id: picture
        x: Theme.panelPadding
        anchors.verticalCenter: parent.verticalCenter
        width: 50
        height: 50
        radius: Theme.menuRadius
        color: Theme.field
        clip: true

        Image {
            id: thumbnail
            anchors.fill: parent
            anchors.margins: 1
            source: toast.image
            sourceSize: Qt.size(0, 100)
            fillMode: Image.PreserveAspectCrop
            asynchronous: true
            cache: false
            visible: status === Image.Ready
        }
        Symbol {
            anchors.centerIn: parent
            visible: !thumbnail.visible
            name: toast.symbol
            font.pixelSize: 26
            color: Theme.accentInk
        }
    }

    Column {
        anchors.left: picture.right
        anchors.leftMargin: Theme.panelPadding
        anchors.right: badge.visible ? badge.left : parent.right
        anchors.rightMargin: Theme.panelPadding
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Text {
            width: parent.width
            text: toast.title
            textFormat: Text.PlainText
            font.pixelSize: Theme.fieldSize
            font.weight: Font.DemiBold
            color: Theme.primaryText
            elide: Text.ElideRight
            maximumLineCount: 1
        }
        Text {
            width: parent.width
            visible: text !== ""
            text: toast.subtitle
            textFormat: Text.PlainText
            font.pixelSize: Theme.bodySize
            color: Theme.secondaryText
            elide: Text.ElideRight
            maximumLineCount: 1
        }
    }

    Rectangle {
        id: badge
        visible: toast.model.count > 1
        anchors.right: parent.right
        anchors.rightMargin: Theme.panelPadding
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(height, number.implicitWidth + 12)
        height: 22
        radius: 11
        color: Theme.accentFill

        Text {
            id: number
            anchors.centerIn: parent
            text: toast.model.count
            font.pixelSize: Theme.bodySize
            font.weight: Font.DemiBold
            color: "white"
        }
    }
}
