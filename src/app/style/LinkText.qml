// A text that is a link: it looks like one and answers like a button.
PushButton {
    role: PushButton.Link
}
