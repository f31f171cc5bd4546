import QtQuick
import "qrc:/brimquill/Views"

// What can be pressed now, in one line; what does not fit is left out from the end.
Item {
    height: Theme.hintHeight

    Row {
        id: pause

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        spacing: Theme.smallGap
        visible: settings.capturePaused

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            size: 12
            name: "pause.circle.fill"
            color: Theme.warning
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: "capture paused"
            font.pixelSize: Theme.hintSize
            color: Theme.warning
        }
    }
    Item {
        anchors { left: parent.left; right: pause.visible ? pause.left : parent.right; top: parent.top; bottom: parent.bottom }

        Row {
            id: hints

            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.panelPadding + 2

            Repeater {
                model: ["click copy · ↩ paste", "⌘/⇧-click multi-select", "⌘M recent · ⌘L links · ⌘I images · ⌘G gifs · ⌘S shots",
                        "⌘←→ scopes · ⌘E emoji", "⌘T tag · ⌘P file · ⌘J pause", "esc back", "drag out · right-click more"]

                Text {
                    required property string modelData

                    text: modelData
                    font.pixelSize: Theme.hintSize
                    color: Theme.secondaryText
                    opacity: x + width <= hints.parent.width ? 1 : 0
                }
            }
        }
    }
}
