import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.App

// The window: the agreement, or the sidebar and the screens.
ApplicationWindow {
    id: window

    required property ContentView content

    title: "Sorvanta"
    width: 1200
    height: 700
    minimumWidth: 720
    minimumHeight: 480
    visible: ColorScheme.isSettled

    Loader {
        anchors.fill: parent
        sourceComponent: window.content.hasAcceptedPolicies ? frame : agreement
    }

    Component {
        id: agreement

        TermsAcceptancePage {
            privacyUrl: window.content.privacyURL
            termsUrl: window.content.termsURL
            onAccepted: window.content.acceptPolicies()
            onQuitRequested: window.content.quit()
            onLinkOpened: address => window.content.open(address)
        }
    }

    Component {
        id: frame

        SplitFrame {
            content: window.content
        }
    }
}
