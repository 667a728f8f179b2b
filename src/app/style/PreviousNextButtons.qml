import QtQuick

// Two arrows in one outline, to step through what was found.
Item {
    id: pair

    property bool previousEnabled: enabled
    property bool nextEnabled: enabled
    property string previousName: "Previous match"
    property string nextName: "Next match"

    signal previous
    signal next

    implicitWidth: 65
    implicitHeight: Theme.controlHeight

    ControlFrame {
        anchors.fill: parent
        border.width: 1
        color: pair.previousEnabled || pair.nextEnabled ? Theme.control : Theme.well
        border.color: pair.previousEnabled || pair.nextEnabled ? Theme.controlBorder : Theme.separator
        raised: false
    }

    ArrowButton {
        enabled: pair.previousEnabled
        symbol: "chevron.up"
        objectName: "previousButton"
        Accessible.name: pair.previousName
        onClicked: pair.previous()
    }

    Rectangle {
        x: 32
        y: 1
        width: 1
        height: pair.height - 2
        color: pair.previousEnabled || pair.nextEnabled ? Theme.controlBorder : Theme.separator
    }

    ArrowButton {
        enabled: pair.nextEnabled
        x: 33
        symbol: "chevron.down"
        objectName: "nextButton"
        Accessible.name: pair.nextName
        onClicked: pair.next()
    }
}
