import QtQuick
import Sorvanta.Style

TextField {
    id: field

    leftPadding: 32
    Accessible.searchEdit: true

    Icon {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        symbol: "search"
        color: field.enabled ? Theme.text2 : Theme.textDisabled
    }
}
