import QtQuick

// One of the system's named symbols, such as "doc.on.clipboard".
Text {
    property string name
    property int size: 16

    width: size
    height: size
    text: name === "" ? "" : appearance.glyph(name)
    font.family: appearance.symbolFamily()
    font.pixelSize: size
    color: Theme.primaryText
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
