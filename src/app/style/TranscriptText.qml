import QtQuick

// A row of a transcript.
StyledText {
    font.pixelSize: 14
    font.weight: Font.Normal
    lineSize: 21
}
