import QtQuick

// The title of a screen.
StyledText {
    font.pixelSize: 28
    font.weight: Font.Bold
    font.family: Theme.displayFamily
    Accessible.role: Accessible.Heading
    lineSize: 34
}
