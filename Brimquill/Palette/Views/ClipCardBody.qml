import QtQuick
import "qrc:/brimquill/Views"

// What a card shows of its clip, by the kind of the clip.
Loader {
    id: root

    required property var card

    sourceComponent: card.body === "image" ? picture
                     : card.body === "color" ? swatch
                     : card.body === "emoji" ? emoji
                     : card.body === "files" || card.body === "missingFile" ? files
                     : words

    Component {
        id: words

        Item {
            Text {
                anchors { fill: parent; margins: Theme.gap; topMargin: 7; bottomMargin: 0 }
                text: root.card.bodyText
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: Math.floor(height / 15)
                lineHeightMode: Text.FixedHeight
                lineHeight: 15
                font.pixelSize: Theme.bodySize
                color: Theme.primaryText
            }
        }
    }
    Component {
        id: picture

        Item {
            clip: true

            Symbol {
                anchors.centerIn: parent
                size: 28
                name: "photo"
                color: Theme.secondaryText
                // A file that is no picture any more is read all the same, to nothing.
                visible: image.status !== Image.Ready || image.implicitWidth <= 1
            }
            Image {
                id: image

                anchors.fill: parent
                source: root.card.imageSource
                sourceSize { width: Theme.cardWidth; height: Theme.cardHeight - Theme.cardHeaderHeight - Theme.cardFooterHeight }
                // Cropped to its place when it was read; what is smaller stays as sharp as it is.
                fillMode: Image.Pad
                asynchronous: true
                Accessible.ignored: true
            }
        }
    }
    Component {
        id: swatch

        Rectangle {
            color: root.card.swatchFill

            Text {
                anchors.centerIn: parent
                text: root.card.bodyText
                font.family: "Noto Sans Mono"
                font.pixelSize: Theme.fieldSize
                font.weight: Font.DemiBold
                color: root.card.swatchText
            }
        }
    }
    Component {
        id: emoji

        Item {
            Text {
                id: character

                anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 14 }
                text: root.card.bodyText
                font.pixelSize: 64
                height: 84
                verticalAlignment: Text.AlignVCenter
            }
            Text {
                anchors { left: parent.left; right: parent.right; margins: Theme.gap; bottom: parent.bottom; bottomMargin: 6 }
                text: root.card.caption
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: Theme.bodySize
                color: Theme.secondaryText
            }
        }
    }
    Component {
        id: files

        Item {
            Symbol {
                id: document

                anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 18 }
                size: 40
                name: root.card.body === "files" ? "doc.fill" : "questionmark.folder"
                color: root.card.headerFill
                visible: icon.implicitWidth <= 1
            }
            Image {
                id: icon

                anchors.centerIn: document
                width: 40
                height: 40
                fillMode: Image.PreserveAspectFit
                source: root.card.fileIconSource
                sourceSize { width: 40; height: 40 }
                asynchronous: true
                Accessible.ignored: true
            }
            Text {
                anchors { left: parent.left; right: parent.right; top: document.bottom; margins: Theme.gap }
                text: root.card.bodyText
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 2
                lineHeightMode: Text.FixedHeight
                lineHeight: 15
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: Theme.bodySize
                color: Theme.primaryText
            }
            Text {
                anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: Theme.gap; bottomMargin: 2 }
                text: root.card.caption
                textFormat: Text.PlainText
                elide: Text.ElideMiddle
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: Theme.hintSize
                color: Theme.secondaryText
            }
        }
    }
}
