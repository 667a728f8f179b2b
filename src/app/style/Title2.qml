import QtQuick

// The header of a viewer.
StyledText {
    font.pixelSize: 22
    font.weight: Font.Bold
    font.family: Theme.displayFamily
    Accessible.role: Accessible.Heading
    lineSize: 28
}
