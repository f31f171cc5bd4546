import QtQuick

// One of the system's named symbols, such as "doc.on.clipboard".
Text {
    property string name

    text: name === "" ? "" : appearance.glyph(name)
    font.family: appearance.symbolFamily()
    font.pixelSize: 16
    color: Theme.primaryText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
