pragma Singleton
import QtQuick

// What a key does that presses a control: one that is held presses once.
QtObject {
    function once(event, press) {
        if (!event.isAutoRepeat)
            press();
    }
}
