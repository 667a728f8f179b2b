import QtQuick

// The label of a row, and status words.
StyledText {
    font.pixelSize: 13
    font.weight: Font.Medium
    lineSize: 18
}
