import QtQuick
import "qrc:/brimquill/Views"

// The focused clip, large.
Rectangle {
    id: root

    color: Theme.dim
    radius: Theme.panelRadius
    Accessible.role: Accessible.Dialog
    Accessible.name: picker.preview.title ?? ""

    PointerShield { onClicked: picker.previewOpen = false }

    Rectangle {
        anchors.centerIn: parent
        width: Math.min(700, root.width - 48)
        height: root.height - 24
        radius: 20
        color: Theme.cardBody

        PointerShield {}

        Rectangle {
            id: badge

            anchors { left: parent.left; top: parent.top; leftMargin: 24; topMargin: 16 }
            width: Math.min(title.implicitWidth + 16, parent.width - 48 - footer.width - Theme.gap)
            height: 22
            radius: 11
            color: picker.preview.fill ?? "transparent"

            Text {
                id: title

                anchors { fill: parent; leftMargin: 8; rightMargin: 8 }
                text: picker.preview.title ?? ""
                textFormat: Text.PlainText
                elide: Text.ElideRight
                maximumLineCount: 1
                verticalAlignment: Text.AlignVCenter
                font.pixelSize: Theme.titleSize
                font.weight: Font.DemiBold
                color: picker.preview.onFill ?? "white"
            }
        }
        Text {
            id: footer

            anchors { right: parent.right; rightMargin: 24; verticalCenter: badge.verticalCenter }
            text: picker.preview.footer ?? ""
            font.pixelSize: Theme.hintSize
            color: Theme.secondaryText
        }
        Image {
            id: image

            anchors { left: parent.left; top: badge.bottom; bottom: parent.bottom; margins: 24; topMargin: 10; bottomMargin: 16 }
            width: visible ? (words.visible ? parent.width * 0.5 : parent.width - 48) : 0
            visible: (picker.preview.image ?? "") !== ""
            source: picker.preview.image ?? ""
            sourceSize { width: 640; height: 400 }
            // A small one stays as sharp as it is.
            fillMode: implicitWidth > width || implicitHeight > height ? Image.PreserveAspectFit : Image.Pad
            horizontalAlignment: words.visible ? Image.AlignLeft : Image.AlignHCenter
            asynchronous: true
        }
        Symbol {
            anchors.centerIn: image
            size: 40
            name: "photo"
            color: Theme.secondaryText
            // What cannot be read is read all the same, to nothing.
            visible: image.visible && (image.status === Image.Error || image.status === Image.Ready && image.implicitWidth <= 1)
        }
        Flickable {
            id: words

            readonly property real clipId: picker.preview.clipId ?? 0
            onClipIdChanged: contentY = 0

            anchors {
                left: image.visible ? image.right : parent.left
                right: parent.right
                top: badge.bottom
                bottom: parent.bottom
                margins: 24
                topMargin: 10
                bottomMargin: 16
            }
            visible: (picker.preview.text ?? "") !== ""
            clip: true
            contentHeight: text.height
            boundsBehavior: Flickable.StopAtBounds

            Text {
                id: text

                width: words.width
                text: picker.preview.text ?? ""
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                font.pixelSize: Theme.fieldSize
                lineHeight: Theme.lineHeight
                color: Theme.primaryText
                horizontalAlignment: Text.AlignLeft
            }
        }
    }
}
