import QtQuick.Templates as T

T.ApplicationWindow {
    color: Theme.windowColor
}
