import QtQuick
import Sorvanta.Style

// The title of a screen and the line under it.
Column {
    id: header

    property string title
    property string subtitle

    spacing: 4

    LargeTitle {
        width: parent.width
        text: header.title
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }

    BodyText {
        objectName: "screenSubtitle"
        width: parent.width
        text: header.subtitle
        color: Theme.text2
        wrapMode: Text.Wrap
    }
}
