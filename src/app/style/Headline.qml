import QtQuick

// The heading of a panel or a list.
StyledText {
    font.pixelSize: 14
    font.weight: Font.DemiBold
    font.family: Theme.textFamily
    Accessible.role: Accessible.Heading
    lineSize: 20
}
