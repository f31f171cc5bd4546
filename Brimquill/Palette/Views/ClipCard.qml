import QtQuick
import "qrc:/brimquill/Views"

// One clip.
Item {
    id: card

    required property int index
    required property string title
    required property color headerFill
    required property color headerText
    required property string age
    required property string body
    required property string bodyText
    required property string caption
    required property string imageSource
    required property string iconSource
    required property string fileIconSource
    required property string swatchFill
    required property string swatchText
    required property string footer
    required property bool pinned
    required property bool expires
    required property bool marked
    required property bool copied
    required property bool arrived
    required property string badge
    required property string accessibleName
    property bool selected
    /// How far from its place it stands while it slides there.
    readonly property alias slide: shift.x

    /// Stands this far from its place and springs back to it; at 0 it is there at once.
    function slideFrom(distance) {
        sliding.stop()
        shift.x = distance
        if (distance !== 0)
            sliding.start()
    }

    width: Theme.cardWidth
    height: Theme.cardHeight
    z: scale > 1 ? 2 : slide !== 0 ? 1 : 0
    Accessible.role: Accessible.ListItem
    Accessible.name: accessibleName
    Accessible.description: ListView.view ? (index + 1) + " of " + ListView.view.count : ""
    Accessible.focusable: true
    Accessible.focused: selected
    Accessible.selectable: true
    Accessible.selected: selected || marked
    Accessible.onPressAction: panel.cardClicked(index, 0)

    ListView.onPooled: slideFrom(0)

    states: [
        State {
            name: "arrived"
            when: card.arrived && !Theme.reduceMotion
            PropertyChanges { target: card; scale: 1.1 }
        }
    ]
    transitions: [
        Transition {
            to: "arrived"
            NumberAnimation { property: "scale"; duration: 200; easing.type: Easing.OutQuad }
        },
        Transition {
            from: "arrived"
            NumberAnimation { property: "scale"; duration: 500; easing.type: Easing.OutQuad }
        }
    ]
    transform: Translate { id: shift }

    NumberAnimation {
        id: sliding

        target: shift
        property: "x"
        to: 0
        duration: Theme.springDuration
        easing.bezierCurve: Theme.springCurve
    }

    // The ring lies outside, so that nothing shifts when the choice moves.
    Rectangle {
        anchors { fill: parent; margins: -3 }
        radius: Theme.cardRadius + 3
        color: "transparent"
        border { width: 2; color: Theme.accentInk }
        visible: card.selected || card.marked
    }

    Rectangle {
        id: face

        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.cardBody
    }

    ClipCardBody {
        anchors {
            fill: parent
            topMargin: Theme.cardHeaderHeight
            bottomMargin: Theme.cardFooterHeight
        }
        card: card
    }
    ClipCardHeader {
        anchors { left: parent.left; right: parent.right }
        card: card
    }

    // The footer
    Text {
        anchors { left: parent.left; leftMargin: Theme.gap; bottom: parent.bottom; right: signs.left }
        height: Theme.cardFooterHeight
        verticalAlignment: Text.AlignVCenter
        text: card.footer
        elide: Text.ElideRight
        font.pixelSize: Theme.hintSize
        color: Theme.secondaryText
    }
    Row {
        id: signs

        anchors { right: parent.right; rightMargin: Theme.gap; bottom: parent.bottom }
        height: Theme.cardFooterHeight
        spacing: Theme.smallGap

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.expires
            size: 12
            name: "timer"
            color: Theme.warning
        }
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.pinned
            size: 12
            name: "pin.fill"
            color: Theme.secondaryText
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: card.badge
            font.pixelSize: Theme.hintSize
            color: Theme.secondaryText
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: "transparent"
        border { width: 1; color: Theme.hairline }
    }

    Symbol {
        anchors { right: parent.right; rightMargin: 6; top: parent.top; topMargin: Theme.cardHeaderHeight + 6 }
        visible: card.marked
        size: 22
        name: "checkmark.circle.fill"
        color: Theme.accentInk
    }

    // Over the body alone: the header goes on saying what it was.
    Loader {
        id: confirmation

        anchors { fill: parent; topMargin: Theme.cardHeaderHeight; bottomMargin: Theme.cardFooterHeight }
        active: opacity > 0
        opacity: 0
        state: card.copied ? "copied" : ""
        states: State {
            name: "copied"
            PropertyChanges { target: confirmation; opacity: 1 }
        }
        transitions: [
            Transition {
                to: "copied"
                enabled: !Theme.reduceMotion
                NumberAnimation { property: "opacity"; duration: 250; easing { type: Easing.OutBack; overshoot: 0.6 } }
            },
            Transition {
                from: "copied"
                enabled: !Theme.reduceMotion
                NumberAnimation { property: "opacity"; duration: 250; easing.type: Easing.OutQuad }
            }
        ]

        sourceComponent: Rectangle {
            color: Theme.withAlpha(Theme.cardBody, 0.92)

            Column {
                anchors.centerIn: parent
                // It springs up and fades away.
                scale: Theme.reduceMotion || !card.copied ? 1 : confirmation.opacity
                spacing: Theme.smallGap

                Symbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    size: 28
                    name: "checkmark.circle.fill"
                    color: Theme.success
                }
                Text {
                    text: "Copied!"
                    font.pixelSize: Theme.titleSize
                    font.weight: Font.DemiBold
                    color: Theme.primaryText
                }
            }
        }
    }

    DragHandler {
        target: null
        acceptedDevices: PointerDevice.Mouse
        // Before the strip takes the movement for a flick, and never given up to it.
        dragThreshold: 6
        grabPermissions: PointerHandler.CanTakeOverFromAnything
        onActiveChanged: if (active) panel.cardDragged(card.index, card)
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.WithinBounds
        onPressedChanged: {
            if (!pressed)
                return
            const at = card.mapToItem(null, point.pressPosition)
            panel.menu.openAt(card.index, at.x, at.y)
        }
    }
    TapHandler {
        id: tap

        // The event's own point does not know the modifiers, the handler's does.
        onSingleTapped: panel.cardClicked(card.index, tap.point.modifiers)
        onDoubleTapped: panel.cardDoubleClicked(card.index)
    }
}
