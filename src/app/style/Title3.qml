import QtQuick

// The title of a detail or a sheet.
StyledText {
    font.pixelSize: 18
    font.weight: Font.DemiBold
    font.family: Theme.displayFamily
    Accessible.role: Accessible.Heading
    lineSize: 24
}
