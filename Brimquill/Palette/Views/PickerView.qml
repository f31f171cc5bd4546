import QtQuick
import "qrc:/brimquill/Views"

// The palette: bar, types, cards, hints, and what lies over them.
PanelSurface {
    id: root

    required property var picker
    required property var panel
    required property var cheatSheet
    required property var settings

    function makeExplorer() {
        explorerLoader.active = true
    }
    function placeFocus() {
        if (picker.explorer.open) {
            makeExplorer()
            explorerLoader.item.takeFocus()
        } else if (cheatSheetLoader.item) {
            cheatSheetLoader.item.forceActiveFocus()
        } else {
            topBar.takeFocus()
        }
    }

    Item {
        id: content

        width: parent.width
        height: parent.height

        MouseArea {
            anchors.fill: parent
            onPressed: event => {
                const at = mapToItem(null, event.x, event.y)
                root.panel.backgroundPressed(at.x, at.y)
            }
            onPositionChanged: root.panel.backgroundDragged()
            onReleased: root.panel.backgroundReleased()
            onCanceled: root.panel.backgroundReleased()
        }
        // Below the bars, for these tell over the cards what their buttons are for.
        PickerCardStrip {
            id: strip

            anchors { left: parent.left; right: parent.right; top: typeBar.bottom; topMargin: 4 }
        }
        PickerTopBar {
            id: topBar

            anchors { left: parent.left; right: parent.right; top: parent.top; margins: Theme.panelPadding; topMargin: 4 }
        }
        PickerTypeBar {
            id: typeBar

            anchors { left: parent.left; leftMargin: Theme.panelPadding; top: topBar.bottom; topMargin: 2 }
        }
        PickerHintBar {
            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.bottom
                leftMargin: Theme.panelPadding
                rightMargin: Theme.panelPadding
            }
        }
        Loader {
            anchors.fill: parent
            active: picker.previewShown
            sourceComponent: PreviewOverlay {}
        }
        Loader {
            id: cheatSheetLoader

            anchors.fill: parent
            active: picker.cheatSheetOpen
            sourceComponent: CheatSheetOverlay {}
            onLoaded: root.placeFocus()
        }
        // Its keys work whatever else is open, so it lies over all of it. Made with its first rows, which come once the
        // palette stands, and kept.
        Loader {
            id: explorerLoader

            x: topBar.x + topBar.filterButton.x
            anchors { top: topBar.bottom; topMargin: -2 }
            active: false
            visible: picker.explorer.open
            sourceComponent: ExplorerPopover {}

            Connections {
                target: picker.explorer.rows
                // A list that is made while its model tells of rows would count them twice.
                function onRowsInserted() {
                    Qt.callLater(root.makeExplorer)
                }
            }
        }
        CardMenuView {
            anchors.fill: parent
            menu: root.panel.menu
        }
    }

    // It comes up by a few points; it goes at once.
    ParallelAnimation {
        id: arrival

        NumberAnimation { target: content; property: "opacity"; from: 0; to: 1; duration: 120; easing.type: Easing.OutQuad }
        NumberAnimation {
            target: content
            property: "y"
            from: 8
            to: 0
            duration: 120
            easing.type: Easing.OutQuad
        }
    }

    Connections {
        target: root.panel
        function onAppeared() {
            strip.announce()
        }
        function onAppearing() {
            strip.toStart()
            root.placeFocus()
            if (!Theme.reduceMotion)
                arrival.restart()
        }
    }
    Connections {
        target: root.picker
        function onOverlaysChanged() {
            root.placeFocus()
        }
    }
    Connections {
        target: root.picker.explorer
        function onOpenChanged() {
            root.placeFocus()
        }
    }
}
