import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// A status word in its colour.
LabelText {
    property int tone: FileTone.Secondary

    font.pixelSize: 12
    lineSize: 18
    color: {
        switch (tone) {
        case FileTone.Blue:
            return Theme.info;
        case FileTone.Green:
            return Theme.success;
        case FileTone.Red:
            return Theme.danger;
        case FileTone.Orange:
            return Theme.warning;
        }
        return Theme.text2;
    }
}
