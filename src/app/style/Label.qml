import QtQuick
import QtQuick.Templates as T

T.Label {
    color: enabled ? Theme.text : Theme.textDisabled
    linkColor: Theme.accentText
    font.pixelSize: 13
}
