import QtQuick

// A bold white word on a coloured capsule.
Item {
    id: badge

    property string text
    property bool indigo: false

    implicitWidth: Math.ceil(words.implicitWidth + 24)
    implicitHeight: 26
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Rectangle {
        y: 2
        width: parent.width
        height: parent.height
        radius: 13
        color: "#14000000"
    }

    Rectangle {
        y: 1
        width: parent.width
        height: parent.height
        radius: 13
        color: "#26000000"
    }

    Rectangle {
        anchors.fill: parent
        radius: 13
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: badge.indigo ? Theme.indigoBadge : Theme.accent }
            GradientStop { position: 1; color: badge.indigo ? Theme.indigoBadgeEnd : Theme.accentBadgeEnd }
        }
    }

    CaptionText {
        id: words

        anchors.centerIn: parent
        text: badge.text
        color: Theme.accentOn
        font.weight: Font.Bold
        Accessible.ignored: true
    }
}
