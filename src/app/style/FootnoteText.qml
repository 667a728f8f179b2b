import QtQuick

// Hints, dates, counters, progress.
StyledText {
    font.pixelSize: 12
    font.weight: Font.Normal
    lineSize: 16
    color: Theme.text2
}
