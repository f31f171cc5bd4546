import QtQuick
import "qrc:/brimquill/Views"

// The cards, side by side, or why there are none.
Item {
    id: root

    function announce() {
        if (list.currentItem)
            panel.cardFocused(list.currentItem)
    }
    function toStart() {
        list.positionViewAtBeginning()
        // The beginning of the cards would lie at the very edge.
        list.contentX = list.originX - list.leftMargin
    }

    height: Theme.cardHeight + 8

    // Cut off at the sides alone: a card that has just come is for a moment higher than the strip.
    Item {
        anchors { fill: parent; topMargin: -10; bottomMargin: -10 }
        clip: true

        ListView {
            id: list

            anchors { fill: parent; topMargin: 10; bottomMargin: 10 }
            orientation: ListView.Horizontal
            spacing: Theme.cardGap
            leftMargin: Theme.panelPadding + 2
            rightMargin: Theme.panelPadding + 2
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: 0
            reuseItems: true
            model: picker.cards
            currentIndex: picker.selectedIndex
            highlightFollowsCurrentItem: true
            // The field keeps the keyboard; a screen reader follows the cards all the same.
            onCurrentItemChanged: root.announce()
            highlightMoveDuration: !Theme.reduceMotion ? 150 : 0
            highlightMoveVelocity: -1
            highlight: Item {}
            preferredHighlightBegin: Theme.panelPadding + 2
            preferredHighlightEnd: width - Theme.panelPadding - 2
            highlightRangeMode: ListView.ApplyRange
            Accessible.role: Accessible.List
            Accessible.name: "Clips"
            delegate: ClipCard {
                y: 4
                selected: ListView.isCurrentItem
            }
            WheelHandler {
                // A vertical wheel moves along the strip.
                acceptedDevices: PointerDevice.Mouse
                onWheel: event => {
                    // The first card need not be at 0: rows that went may have left the others where they were.
                    const start = list.originX - list.leftMargin
                    const end = list.originX + list.contentWidth + list.rightMargin - list.width
                    list.contentX = Math.max(start, Math.min(end, list.contentX - event.angleDelta.y))
                }
            }
        }
    }

    // The first card, which is focused then, is to be seen, though the strip was scrolled without the focus.
    Connections {
        target: picker
        function onQuestionChanged() {
            if (list.currentIndex <= 0)
                root.toStart()
        }
    }

    // Cards that stay spring to their new places, from where they are seen now.
    Connections {
        target: picker.cards
        function onRearranged(from) {
            if (Theme.reduceMotion)
                return
            // Else rows that were added have no card yet.
            list.forceLayout()
            const cards = from.map((_, row) => list.itemAtIndex(row))
            const slides = cards.map(card => card ? card.slide : 0)
            cards.forEach((card, row) => {
                const before = from[row]
                if (!card || before === row)
                    return
                const distance = (before - row) * (Theme.cardWidth + Theme.cardGap) + (slides[before] ?? 0)
                card.slideFrom(before < 0 ? 0 : Math.max(-list.width, Math.min(distance, list.width)))
            })
        }
    }

    // Tells screen readers how many cards there are, each time that this changes.
    Item {
        anchors.fill: parent
        Accessible.role: Accessible.StatusBar
        Accessible.name: list.count === 0 ? picker.emptyTitle : list.count === 1 ? "1 clip" : list.count + " clips"
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(320, parent.width - 2 * Theme.panelPadding)
        spacing: Theme.smallGap
        visible: list.count === 0

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            size: 28
            name: picker.emptySymbol
            color: Theme.secondaryText
        }
        Text {
            width: parent.width
            text: picker.emptyTitle
            textFormat: Text.PlainText
            elide: Text.ElideMiddle
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: Theme.fieldSize
            font.weight: Font.DemiBold
            color: Theme.primaryText
        }
        Text {
            width: parent.width
            text: picker.emptySubtitle
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: Theme.bodySize
            color: Theme.secondaryText
        }
    }
}
