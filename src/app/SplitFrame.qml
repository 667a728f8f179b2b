import QtQuick
import Sorvanta.Style
import Sorvanta.App
import Sorvanta.Screens

// The sidebar and, beside it, all screens on top of each other: the chosen one is seen, the others go on unseen.
Item {
    id: frame

    required property ContentView content

    Sidebar {
        id: sidebar

        width: implicitWidth
        height: parent.height
        sections: frame.content.sections
        currentIndex: frame.content.selectedIndex
        versionText: frame.content.versionText
        onChosen: index => frame.content.selectedIndex = index
    }

    Item {
        id: screens

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 0

            TranscriptFromFilePage {
                anchors.fill: parent
                view: frame.content.detail.fileScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 1

            RecordAudioPage {
                anchors.fill: parent
                view: frame.content.detail.microphoneScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 2

            MeetingRecorderPage {
                anchors.fill: parent
                view: frame.content.detail.meetingScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 3

            BatchProcessingPage {
                anchors.fill: parent
                view: frame.content.detail.batchScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 4

            HistoryPage {
                anchors.fill: parent
                view: frame.content.detail.historyScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 5

            ModelsSettingsPage {
                anchors.fill: parent
                view: frame.content.detail.modelsScreen
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex === 6

            SupportPage {
                anchors.fill: parent
                supportText: frame.content.supportText
                modelIssueText: frame.content.modelIssueText
                termsUrl: frame.content.termsURL
                privacyUrl: frame.content.privacyURL
                onLinkOpened: address => frame.content.open(address)
            }
        }

        Section {
            stack: screens
            isSelected: frame.content.selectedIndex < 0

            BodyText {
                objectName: "noSection"
                anchors.centerIn: parent
                text: "Select a section"
                color: Theme.text2
            }
        }
    }
}
