import QtQuick

// A white sheet with an outline. Children are laid inside of it by whoever fills it.
Rectangle {
    id: card

    radius: Theme.cardRadius
    color: Theme.card
    border.width: 1
    border.color: Theme.separator

    Rectangle {
        visible: !Theme.dark
        z: -1
        y: 1
        width: card.width
        height: card.height
        radius: card.radius
        color: Theme.cardDepth
    }
}
