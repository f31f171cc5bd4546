pragma Singleton
import QtQuick

// What all views share of how things look. A number that two views use belongs here.
QtObject {
    readonly property bool dark: appearance.dark
    readonly property bool translucent: appearance.translucent
    readonly property bool reduceMotion: appearance.reduceMotion

    // Colours
    readonly property color surface: dark ? (translucent ? "#F01B1C1F" : "#1B1C1F")
                                          : (translucent ? "#F5F2F3F5" : "#F2F3F5")
    readonly property color cardBody: dark ? "#2A2B2F" : "#FFFFFF"
    readonly property color field: dark ? Qt.rgba(1, 1, 1, 0.09) : Qt.rgba(0, 0, 0, 0.06)
    readonly property color hairline: dark ? Qt.rgba(1, 1, 1, 0.12) : Qt.rgba(0, 0, 0, 0.10)
    readonly property color edge: dark ? "#3A3B40" : "#D4D6DA"
    readonly property color primaryText: dark ? "#EDEEF0" : "#1C1D21"
    readonly property color secondaryText: dark ? "#A6A9B2" : "#63666E"
    readonly property color accentFill: appearance.accentFill
    readonly property color accentInk: appearance.accentInk
    readonly property color fieldHovered: dark ? Qt.rgba(1, 1, 1, 0.15) : Qt.rgba(0, 0, 0, 0.10)
    readonly property color warning: dark ? "#E6720C" : "#A85008"
    readonly property color success: dark ? "#2FA84F" : "#26863F"
    readonly property color destructive: dark ? "#E86C65" : "#DF3127"
    readonly property color dim: Qt.rgba(0, 0, 0, 0.45)

    function withAlpha(base: color, alpha: real): color {
        return Qt.rgba(base.r, base.g, base.b, alpha)
    }

    // Type, in pixels at scale 1
    readonly property int fieldSize: 13
    readonly property int titleSize: 12
    readonly property int bodySize: 11
    readonly property int hintSize: 10
    readonly property real lineHeight: 1.3

    // Grid of 4
    readonly property int cardPadding: 8
    readonly property int panelPadding: 12
    readonly property int smallGap: 4
    readonly property int gap: 8
    readonly property int cardGap: 14

    readonly property int rowHeight: 24

    // Radii
    readonly property int panelRadius: 16
    readonly property int cardRadius: 12
    readonly property int menuRadius: 10
    readonly property int fieldRadius: 8

    // The strip
    readonly property int barHeight: 36
    readonly property int hintHeight: 20
    readonly property int cardWidth: 178
    readonly property int cardHeight: 186
    readonly property int cardHeaderHeight: 28
    readonly property int cardFooterHeight: 20

    // Depth: how far a panel's shadow reaches where windows may be translucent
    readonly property int shadowWidth: 24

    // Motion, in milliseconds
    readonly property int appearDuration: reduceMotion ? 0 : 120
    readonly property int moveDuration: reduceMotion ? 0 : 150
    readonly property int appearShift: 8
    // A spring that answers within 0.35 s and is damped to 0.8 of what would keep it from swinging: 1.5 % beyond its goal.
    readonly property int springDuration: 350
    readonly property var springCurve: [0.24, 0.16, 0.22, 1.2, 1, 1]
}
