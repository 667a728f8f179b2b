import QtQuick

// A place for one screen in the stack of all. Unless it is selected it is in no window, and so neither seen nor clicked
// nor read out; but it lives on, with all its state.
Item {
    required property Item stack
    property bool isSelected: false

    parent: isSelected ? stack : null
    width: stack.width
    height: stack.height
}
