import QtQuick
import "qrc:/brimquill/Views"

// What a button is for, below it while the pointer is over it.
Rectangle {
    property alias text: help.text

    anchors { left: parent.left; top: parent.bottom; topMargin: 2 }
    z: 10
    width: help.implicitWidth + 12
    height: 18
    radius: 5
    color: Theme.dark ? "#3A3B40" : "#FFFFFF"
    border.color: Theme.hairline

    Text {
        id: help

        anchors.centerIn: parent
        font.pixelSize: Theme.hintSize
        color: Theme.primaryText
        Accessible.ignored: true
    }
}
