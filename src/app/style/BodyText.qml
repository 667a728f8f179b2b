import QtQuick

// Running text and subheadlines.
StyledText {
    font.pixelSize: 13
    font.weight: Font.Normal
    lineSize: 18
}
