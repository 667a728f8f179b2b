pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Sorvanta.Style

T.ComboBox {
    id: control

    property bool ringed: visualFocus

    function textOf(record) {
        if (!textRole)
            return record.modelData;
        const value = record[textRole];
        return value !== undefined ? value : record.modelData[textRole];
    }

    implicitWidth: Theme.pickerWidth
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 32
    focusPolicy: Qt.StrongFocus
    font.pixelSize: 13

    Accessible.role: Accessible.ComboBox
    Accessible.description: displayText
    Accessible.onPressAction: if (enabled) popup.visible ? popup.close() : popup.open()
    // The template itself chooses and closes with Return, on its release.
    Keys.onReleased: event => {
        if (popup.visible || event.isAutoRepeat || (event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter))
            return;
        popup.open();
        event.accepted = true;
    }

    FocusMemory { control: control }

    contentItem: Text {
        text: control.displayText
        font: control.font
        color: control.enabled ? Theme.text : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    indicator: Icon {
        x: control.width - width - 8
        y: (control.height - height) / 2
        symbol: "picker"
        color: control.enabled ? Theme.text2 : Theme.textDisabled
    }

    background: ControlFrame {
        color: !control.enabled ? Theme.well : control.down ? Theme.pressed : control.hovered ? Theme.hover : Theme.control
        border.width: 1
        border.color: control.enabled ? Theme.controlBorder : Theme.separator
        raised: control.enabled
        ringed: control.ringed
    }

    delegate: PickerItem {
        required property var model
        required property int index

        width: ListView.view.width
        text: control.textOf(model)
        highlighted: control.highlightedIndex === index
        chosen: control.currentIndex === index
        Accessible.onPressAction: clicked() // not an index that is set here: it would end the binding of its owner
    }

    popup: T.Popup {
        y: control.height + 4
        width: control.width
        height: Math.min(contentItem.implicitHeight + 12, 360)
        padding: 6
        margins: 8
        onAboutToShow: contentItem.parent.Accessible.name = control.Accessible.name

        contentItem: ListView {
            implicitHeight: contentHeight
            clip: true
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            highlightMoveDuration: 0
            Accessible.role: Accessible.List
            Accessible.name: control.Accessible.name
            T.ScrollBar.vertical: ScrollBar {}
        }

        background: MenuSurface {}

        enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
        exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
    }
}
