pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.App

// The agreement, or the sidebar and the screens.
Loader {
    id: loader

    required property ContentView content

    sourceComponent: content.hasAcceptedPolicies ? frame : agreement

    Component {
        id: agreement

        TermsAcceptancePage {
            privacyUrl: loader.content.privacyURL
            termsUrl: loader.content.termsURL
            onAccepted: loader.content.acceptPolicies()
            onQuitRequested: loader.content.quit()
            onLinkOpened: address => loader.content.open(address)
        }
    }

    Component {
        id: frame

        SplitFrame {
            content: loader.content
        }
    }
}
