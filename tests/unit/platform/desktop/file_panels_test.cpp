#include "platform/desktop/file_panels.h"

#include "support/printing.h"
#include "support/waiting.h"

#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace sorvanta {

namespace {

/// Panels that are Qt's own, answered as a user does.
class Panels : public testing::Test {
protected:
    Panels() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    ~Panels() override
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            delete qobject_cast<QFileDialog *>(widget);
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
    }

    FilePanels::OnChosen onChosen()
    {
        return [this](const std::optional<QString> &path) {
            chosen = path;
            ++answers;
        };
    }
    FilePanels::OnFilesChosen onFilesChosen()
    {
        return [this](const QStringList &paths) {
            chosenFiles = paths;
            ++answers;
        };
    }
    void save(const QString &name, const QStringList &extensions = {"txt"})
    {
        panels.saveFile({name, extensions}, onChosen());
        panel()->setDirectory(folder.path());
        panel()->selectFile(panel()->findChild<QLineEdit *>()->text());
    }
    static QFileDialog *panel()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *const dialog = qobject_cast<QFileDialog *>(widget);
            if (dialog && dialog->isVisible())
                return dialog;
        }
        throw std::runtime_error("There is no panel.");
    }
    static QString shownName() { return panel()->findChild<QLineEdit *>()->text(); }
    static void type(const QString &name) { panel()->findChild<QLineEdit *>()->setText(name); }
    void accept()
    {
        const int before = answers;
        QTest::keyClick(panel()->findChild<QLineEdit *>(), Qt::Key_Return);
        EXPECT_TRUE(waitUntil([this, before] { return answers > before; }));
    }
    void decline()
    {
        panel()->reject();
        EXPECT_EQ(answers, 1);
    }
    /// Presses that button of the question that comes next.
    void answerQuestion(QMessageBox::StandardButton button)
    {
        QTimer::singleShot(0, panel(), [this, button] {
            auto *const question = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!question) {
                answerQuestion(button);
                return;
            }
            ++questions;
            question->button(button)->click();
        });
    }
    QString path(const QString &name) const { return folder.filePath(name); }
    void make(const QString &name) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QTemporaryDir folder;
    SystemFilePanels panels;
    std::optional<QString> chosen;
    QStringList chosenFiles;
    int answers = 0;
    int questions = 0;
};

TEST_F(Panels, aSavePanelProposesItsNameAndAllowsFoldersToBeMade)
{
    save("talk_transcription.html", {"html", "htm"});
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(shownName(), "talk_transcription.html");
    EXPECT_THAT(panel()->nameFilters(), testing::ElementsAre("HTML (*.html *.htm)"));
    EXPECT_FALSE(panel()->testOption(QFileDialog::ReadOnly));
    EXPECT_FALSE(panel()->testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ(panel()->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(answers, 0) << "the panel does not hold up the application";
    accept();
    EXPECT_EQ(chosen, path("talk_transcription.html"));
}

TEST_F(Panels, aDeclinedPanelGivesNoPath)
{
    save("talk.txt");
    decline();
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(Panels, anExtensionThatTheUserRemovedComesBack)
{
    save("talk.txt");
    type("my talk");
    accept();
    EXPECT_EQ(chosen, path("my talk.txt"));
}

TEST_F(Panels, anotherExtensionIsTheUsersChoice)
{
    save("talk.txt");
    type("talk.text");
    accept();
    EXPECT_EQ(chosen, path("talk.text"));
}

TEST_F(Panels, aFileThatIsThereIsReplacedOnlyIfTheUserAgrees)
{
    make("talk.txt");
    save("talk.txt");
    answerQuestion(QMessageBox::No);
    QTest::keyClick(panel()->findChild<QLineEdit *>(), Qt::Key_Return);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(answers, 0);
    type("talk"); // the extension is appended before the question
    answerQuestion(QMessageBox::Yes);
    accept();
    EXPECT_EQ(questions, 2);
    EXPECT_EQ(chosen, path("talk.txt"));
}

class OddName : public Panels, public testing::WithParamInterface<QString> { };

TEST_P(OddName, isProposedAndTakenAsItIs)
{
    save(GetParam());
    EXPECT_EQ(shownName(), GetParam());
    accept();
    EXPECT_EQ(chosen, path(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(, OddName,
                         testing::Values(u"日本語 🙂.txt"_qs, u"100% %1 %2.txt"_qs, u"a * ? [b] {c}.txt"_qs,
                                         u"it's.txt"_qs, u"a\\b.txt"_qs, u"a:b|c<d>.txt"_qs, u"$HOME.txt"_qs,
                                         u"~_transcription.txt"_qs, u"#1; (2), &c.txt"_qs, u"-rf.txt"_qs,
                                         u" blanks  within .txt"_qs, u".hidden_transcription.txt"_qs,
                                         u"http:%2F%2Fa.txt"_qs));

TEST_F(Panels, quotationMarksOfAProposedNameBecomeApostrophes)
{
    save(u"She said \"yes\"_transcription.txt"_qs);
    EXPECT_EQ(shownName(), u"She said 'yes'_transcription.txt"_qs);
    accept();
    EXPECT_EQ(chosen, path(u"She said 'yes'_transcription.txt"_qs));
}

TEST_F(Panels, aNameThatIsTooLongIsProposedAndTakenOnceItIsShortened)
{
    const QString longName = QString(300, 'n') + ".txt";
    save(longName);
    EXPECT_EQ(shownName(), longName);
    QTest::keyClick(panel()->findChild<QLineEdit *>(), Qt::Key_Return);
    QTest::qWait(50);
    EXPECT_EQ(answers, 0);
    type("short.txt");
    accept();
    EXPECT_EQ(chosen, path("short.txt"));
}

TEST_F(Panels, aFolderPanelTakesOneFolderAndSaysWhatItsButtonDoes)
{
    panels.chooseFolder("Choose Folder", onChosen());
    EXPECT_EQ(panel()->fileMode(), QFileDialog::Directory);
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_TRUE(panel()->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(panel()->testOption(QFileDialog::ReadOnly));
    QStringList buttons;
    for (const QPushButton *button : panel()->findChildren<QPushButton *>())
        buttons << button->text().remove('&');
    EXPECT_THAT(buttons, testing::Contains("Choose Folder"));
    QDir(folder.path()).mkdir("exports");
    panel()->setDirectory(folder.path());
    type("exports");
    accept();
    EXPECT_EQ(chosen, path("exports"));
}

TEST_F(Panels, aDeclinedFolderPanelGivesNoPath)
{
    panels.chooseFolder("Choose Folder", onChosen());
    decline();
    EXPECT_EQ(chosen, std::nullopt);
}

TEST_F(Panels, anOpenPanelTakesOneFileOfItsKind)
{
    make("talk.wav");
    panels.openFile({"Audio and video", {"wav", "mp4"}}, onChosen());
    EXPECT_EQ(panel()->fileMode(), QFileDialog::ExistingFile);
    EXPECT_THAT(panel()->nameFilters(), testing::ElementsAre("Audio and video (*.wav *.mp4)"));
    panel()->setDirectory(folder.path());
    type("talk.wav");
    accept();
    EXPECT_EQ(chosen, path("talk.wav"));
}

TEST_F(Panels, aPanelForManyFilesGivesAllThatWereChosen)
{
    make("one.wav");
    make("two.mp3");
    make("notes.txt");
    panels.openFiles({"Audio and video", {"wav", "mp3"}}, onFilesChosen());
    EXPECT_EQ(panel()->fileMode(), QFileDialog::ExistingFiles);
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_THAT(panel()->nameFilters(), testing::ElementsAre("Audio and video (*.wav *.mp3)"));
    EXPECT_EQ(panel()->windowModality(), Qt::ApplicationModal);
    panel()->setDirectory(folder.path());
    type("\"one.wav\" \"two.mp3\"");
    accept();
    EXPECT_THAT(chosenFiles, testing::UnorderedElementsAre(path("one.wav"), path("two.mp3")));
}

TEST_F(Panels, aDeclinedPanelForManyFilesGivesNone)
{
    panels.openFiles({"Audio and video", {"wav"}}, onFilesChosen());
    decline();
    EXPECT_EQ(chosenFiles, QStringList());
}

} // namespace

} // namespace sorvanta
