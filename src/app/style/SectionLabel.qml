import QtQuick

// The label above a card, indented by 4.
StyledText {
    font.pixelSize: 12
    font.weight: Font.DemiBold
    font.family: Theme.textFamily
    Accessible.role: Accessible.Heading
    lineSize: 16
    color: Theme.text2
    leftPadding: 4
}
