import Sorvanta.App

// The agreement, as it stands before the application.
TermsAcceptancePage {
    required property ContentView content

    privacyUrl: content.privacyURL
    termsUrl: content.termsURL
    onAccepted: content.acceptPolicies()
    onQuitRequested: content.quit()
    onLinkOpened: address => content.open(address)
}
