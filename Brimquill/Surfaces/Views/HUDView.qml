import QtQuick
import "../../Views"

// One line of feedback with its symbol.
PanelSurface {
    id: hud

    required property QtObject model

    bodyWidth: row.implicitWidth + 2 * Theme.cardRadius + 2 * Theme.smallGap
    bodyHeight: 44
    radius: Theme.panelRadius
    opacity: hud.model.shown || !Theme.translucent ? 1 : 0
    Behavior on opacity {
        enabled: !Theme.reduceMotion
        NumberAnimation { duration: Theme.moveDuration }
    }

    Row {
        id: row
        anchors.centerIn: parent
        spacing: Theme.gap

        Symbol {
            name: hud.model.symbol
            font.pixelSize: 20
            color: Theme.accentInk
            height: parent.height
        }
        Text {
            text: hud.model.text
            textFormat: Text.PlainText
            font.pixelSize: Theme.fieldSize
            font.weight: Font.DemiBold
            color: Theme.primaryText
            height: parent.height
            verticalAlignment: Text.AlignVCenter
            width: Math.min(implicitWidth, hud.width > 0 ? hud.width - 2 * hud.margin - 60 : implicitWidth)
            elide: Text.ElideRight
        }
    }
}
