#include "app/content_view.h"
#include "history/transcription_history_store.h"
#include "models/models_settings_view_model.h"
#include "support/fake_engine_bundle.h"
#include "support/fake_file_panels.h"
#include "support/printing.h"
#include "support/waiting.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QDir>
#include <QDirIterator>
#include <QQmlComponent>
#include <QSettings>
#include <QTest>

#include <gmock/gmock.h>

namespace sorvanta {

namespace {

using testing::ElementsAre;

/// The names of everything in the tree that assistive technology is given, seen or unseen.
QStringList allNames(QAccessibleInterface *interface)
{
    QStringList names{interface->text(QAccessible::Name)};
    for (int child = 0; child < interface->childCount(); ++child)
        names += allNames(interface->child(child));
    return names;
}

/// The real window with all that it holds.
class MainWindow : public UiTest {
protected:
    MainWindow()
    {
        // The models are one for the whole process, so their folder is too.
        for (const QString &file : QDir(modelsFolder()).entryList(QDir::Files))
            QFile::remove(modelsFolder() + '/' + file);
    }
    ~MainWindow() override
    {
        window.reset(); // before the content that it looks at
        QSettings("Sorvanta", "Sorvanta").clear();
    }

    void showWindow(bool isAccepted = true)
    {
        QSettings("Sorvanta", "Sorvanta").setValue("hasAcceptedPolicies", isAccepted);
        content = std::make_unique<ContentView>(panels, bundle.resourceFolder());
        QQmlComponent component(&engine, QUrl("qrc:/qt/qml/Sorvanta/App/Main.qml"));
        window.reset(qobject_cast<QQuickWindow *>(
            component.createWithInitialProperties({{"content", QVariant::fromValue(content.get())}})));
        if (!window)
            throw std::runtime_error(component.errorString().toStdString());
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        window->requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    static QString modelsFolder() { return qEnvironmentVariable("XDG_DATA_HOME") + "/Sorvanta/Models"; }
    void useModel(const QByteArray &commands)
    {
        QDir().mkpath(modelsFolder());
        QFile file(modelsFolder() + "/ggml-large-v3-turbo.bin");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(commands);
        file.close();
        content->detail()->fileScreen()->appear();
    }
    TranscriptFromFileView &fileScreen() { return *content->detail()->fileScreen(); }
    TranscriptionRun &run() { return *fileScreen().run(); }
    void chooseFile(const QString &path)
    {
        fileScreen().chooseFile();
        panels.answer(path);
    }
    void runTo42Percent()
    {
        QByteArray commands = "print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n";
        const char *const lines[] = {
            "Good morning, we are standing at the north end of the old harbour.",
            "It is a quarter past six and the boats are just coming back in.",
            "- Could you tell us how long you have worked here?",
            "- Since I was nineteen, so that makes it thirty-one years this autumn.",
            "- And what has changed most about the harbour in that time?",
            "- The sound of it. When I started you could tell each boat by its engine before you saw it.",
            "Nowadays they are all so quiet that you hear the gulls first.",
            "We used to keep the tide tables pinned to the door of the harbour office.",
            "Now everybody has them in a pocket, and nobody looks at the water any more.",
            "I still do.",
            "You see the weather in it an hour before it comes.",
        };
        for (const char *line : lines)
            commands += "print [00%3A00%3A10.000 --> 00%3A00%3A42.000]   " + QByteArray(line) + "%0A\n";
        useModel(commands + "sleep 60000\n");
        chooseFile("/music/Harbour walk interview.m4a");
        fileScreen().start();
        ASSERT_TRUE(waitUntil([this] { return run().lines()->count() == 11; }));
    }
    QStringList words() const { return spokenWords(accessible(window.get())); }
    QStringList names() const { return allNames(accessible(window.get())); }
    /// The item of that name, in the window or not.
    QQuickItem *built(const QString &objectName) const
    {
        auto *found = window->findChild<QQuickItem *>(objectName);
        if (!found)
            throw std::runtime_error("There is no " + objectName.toStdString());
        return found;
    }
    bool isShown(const QString &objectName) const
    {
        return built(objectName)->window() && built(objectName)->isVisible();
    }

    FakeEngineBundle bundle;
    FakeFilePanels panels;
    std::unique_ptr<ContentView> content;
};

TEST_F(MainWindow, hasItsTitleAndItsSize)
{
    showWindow();
    EXPECT_EQ(window->title(), "Sorvanta");
    EXPECT_EQ(window->size(), QSize(1200, 700));
    EXPECT_EQ(window->minimumSize(), QSize(720, 480));
}

TEST_F(MainWindow, showsOnlyTheAgreementUntilItIsAccepted)
{
    showWindow(false);
    EXPECT_TRUE(item("agreeButton")->isVisible());
    EXPECT_EQ(words().value(1), "Welcome to Sorvanta") << "behind the title of the window";
    EXPECT_FALSE(words().contains("Transcript Audio From File"));
    EXPECT_EQ(window->findChild<QQuickItem *>("sections"), nullptr) << "the sidebar does not exist yet";
    savePicture("01-agreement-window");
    click(item("agreeButton"));
    EXPECT_TRUE(content->hasAcceptedPolicies());
    EXPECT_TRUE(QSettings("Sorvanta", "Sorvanta").value("hasAcceptedPolicies").toBool());
    EXPECT_TRUE(item("sections")->isVisible());
    EXPECT_FALSE(words().contains("Welcome to Sorvanta"));
}

TEST_F(MainWindow, beginsWithTheFileScreenBesideASidebarOf260)
{
    showWindow();
    EXPECT_TRUE(item("chooseFileButton")->isVisible());
    EXPECT_EQ(item("dropCard")->mapToScene({0, 0}), QPointF(322, 120));
    EXPECT_EQ(item("version")->property("text").toString(), ContentView::version());
    EXPECT_FALSE(isShown("noSection"));
}

TEST_F(MainWindow, whatIsHiddenIsNeitherSeenNorReadOut)
{
    showWindow();
    const QString title = "Upload an audio file, choose a downloaded model, and generate a transcript using whisper.";
    EXPECT_TRUE(names().contains(title));
    EXPECT_FALSE(names().contains("Key links"));
    content->selectIndex(6);
    EXPECT_FALSE(names().contains(title));
    EXPECT_TRUE(names().contains("Key links"));
    EXPECT_FALSE(isShown("chooseFileButton"));
    EXPECT_FALSE(names().contains("Select a section"));
    content->selectIndex(3);
    EXPECT_FALSE(names().contains(title));
    EXPECT_FALSE(names().contains("Key links"));
}

TEST_F(MainWindow, aHiddenScreenIsNotReachedByClicksOrKeys)
{
    showWindow();
    const QPoint button = item("chooseFileButton")->mapToScene({20, 16}).toPoint();
    content->selectIndex(6);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, button);
    EXPECT_EQ(panels.requests.size(), 0);
    for (int step = 0; step < 12; ++step) {
        press(Qt::Key_Tab);
        const QQuickItem *focused = window->activeFocusItem();
        EXPECT_TRUE(focused && focused->isVisible());
        EXPECT_NE(focused->objectName(), "chooseFileButton");
    }
    content->selectIndex(0);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, button);
    EXPECT_EQ(panels.requests.size(), 1);
}

TEST_F(MainWindow, aRunGoesOnUnseenWithItsStateIntact)
{
    showWindow();
    runTo42Percent();
    item("transcriptLines")->setProperty("contentY", 30);
    QQuickItem *const page = item("transcriptLines");
    content->selectIndex(6);
    settle();
    EXPECT_TRUE(run().isTranscribing());
    content->selectIndex(-1);
    settle();
    EXPECT_TRUE(run().isTranscribing());
    content->selectIndex(0);
    EXPECT_EQ(item("transcriptLines"), page) << "the same page as before";
    EXPECT_EQ(page->property("contentY").toDouble(), 30);
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(item("fileName")->property("text").toString(), "Harbour walk interview.m4a");
    EXPECT_EQ(run().progress(), 0.42);
    run().stopRun();
    EXPECT_TRUE(waitUntil([this] { return run().status() == "Cancelled"; }));
}

TEST_F(MainWindow, withoutASelectionItAsksForOneAndTheScreensLiveOn)
{
    showWindow();
    fileScreen().language()->choose(17);
    content->selectIndex(-1);
    EXPECT_TRUE(isShown("noSection"));
    EXPECT_EQ(item("noSection")->property("text").toString(), "Select a section");
    EXPECT_TRUE(words().contains("Select a section"));
    EXPECT_FALSE(words().contains("Choose File…"));
    content->selectIndex(0);
    EXPECT_FALSE(isShown("noSection"));
    EXPECT_FALSE(words().contains("Select a section"));
    EXPECT_EQ(item("languagePicker")->property("displayText").toString(), "German (de)");
}

TEST_F(MainWindow, theSidebarLeadsAllControlsOfTheKeyboard)
{
    showWindow();
    useModel({});
    chooseFile("/music/a.wav");
    QStringList stops;
    for (int step = 0; step < 5; ++step) {
        press(Qt::Key_Tab);
        const QQuickItem *focused = window->activeFocusItem();
        while (focused && focused->objectName().isEmpty()) // a list hands the focus on to its row
            focused = focused->parentItem();
        stops << (focused ? focused->objectName() : QString());
    }
    EXPECT_THAT(stops, ElementsAre("sections", "chooseFileButton", "modelPicker", "languagePicker", "startButton"));
    tabTo(item("sections"));
    press(Qt::Key_End);
    EXPECT_EQ(content->selectedItem(), SidebarItemType::support);
}

TEST_F(MainWindow, looksAsDrawn)
{
    showWindow();
    useModel({});
    chooseFile("/music/Harbour walk interview.m4a");
    savePicture("02-file-idle");
    EXPECT_EQ(grab().pixelColor(600, 690), QColor("#F5F7F8"));
    setDark(true);
    savePicture("02-file-idle-dark");
    EXPECT_EQ(grab().pixelColor(600, 690), QColor("#15191B"));
    setDark(false);
    runTo42Percent();
    const auto isFilled = [this] { return grab().pixelColor(322 + 516 * 40 / 100, 405) == QColor("#085E78"); };
    EXPECT_TRUE(waitUntil(isFilled)) << "the bar to 42 of 100";
    savePicture("03-file-running");
    EXPECT_EQ(grab().pixelColor(400, 405), QColor("#085E78"));
    EXPECT_EQ(grab().pixelColor(322 + 516 * 44 / 100, 405), QColor("#DCE3E6"));
    setDark(true);
    savePicture("03-file-running-dark");
    setDark(false);
    run().stopRun();
    ASSERT_TRUE(waitUntil([this] { return run().status() == "Cancelled"; }));
    savePicture("file-cancelled");
    run().setError("Whisper failed: error: failed to read audio file '/music/Harbour walk interview.m4a'\n");
    run().setStatus({});
    savePicture("file-error");
    setDark(true);
    savePicture("file-error-dark");
    run().setError(QString("Whisper failed: whisper_init: loading model from a file that is not one\n").repeated(40));
    savePicture("file-long-error-dark");
    window->resize(720, 480);
    savePicture("file-long-error-small-dark");
}

TEST_F(MainWindow, showsTheModelsScreenWithTheRecommendedModel)
{
    QDir().mkpath(modelsFolder());
    ASSERT_TRUE(QFile(modelsFolder() + "/ggml-tiny.bin").open(QIODevice::WriteOnly));
    showWindow();
    content->select(SidebarItemType::models);
    const ModelRows &rows = *content->detail()->modelsScreen()->rows();
    for (int place = 0; place < 6; ++place)
        EXPECT_EQ(rows.rows()[place].recommendedBadge, place == 0 ? "Recommended" : "");
    EXPECT_EQ(rows.rows()[5].statusText, "Ready") << "the screen was on show from the start";
    EXPECT_TRUE(words().contains("Saved as ggml-tiny.bin in Application Support."));
}

TEST_F(MainWindow, aModelThatIsDeletedLeavesThePickersOfTheOtherScreens)
{
    showWindow();
    useModel({});
    EXPECT_TRUE(isShown("modelPicker"));
    content->detail()->modelsScreen()->deleteLocalCopy(0);
    EXPECT_FALSE(isShown("modelPicker"));
    EXPECT_EQ(fileScreen().model()->selectedModelID(), std::nullopt);
}

TEST_F(MainWindow, drawsTheModelsAsTheyAreDrawn)
{
    showWindow();
    content->select(SidebarItemType::models);
    ModelRows &rows = *content->detail()->modelsScreen()->rows();
    const auto show = [&rows](int place, const Status &status, bool hasFile = false) {
        rows.replace(place, modelRow(modelCatalogue()[place], status, hasFile, "large-v3-turbo"));
    };
    const auto downloading = [](qint64 received, qint64 expected, std::optional<double> seconds) {
        return ModelStatus::Downloading{
            {.bytesReceived = received, .totalBytesExpected = expected, .estimatedSecondsRemaining = seconds}};
    };
    savePicture("07-models-none");
    show(0, ModelStatus::Downloaded{"/x"}, true);
    show(1, downloading(1'330'000'000, 3'100'000'000, 252));
    show(2, ModelStatus::Failed{"The network connection was lost."});
    show(3, downloading(142'000'000, -1, std::nullopt));
    show(4, ModelStatus::Failed{"Server responded with 404"}, true);
    settle();
    QQuickItem *const page = item("modelsPage");
    for (const bool isDark : {false, true}) {
        const QString suffix = isDark ? "-dark" : "";
        setDark(isDark);
        window->resize(1200, 700);
        page->setProperty("contentY", 0);
        savePicture("07-models" + suffix);
        EXPECT_EQ(grab().pixelColor(400, 102), color("card"));
        EXPECT_EQ(grab().pixelColor(290, 300), color("windowColor"));
        page->setProperty("contentY", 1e6);
        page->setProperty("contentY", page->property("contentHeight").toDouble() - page->height());
        savePicture("07-models-end" + suffix);
        EXPECT_LE(page->property("contentHeight").toDouble() - page->property("contentY").toDouble(), 700);
        window->resize(720, 480);
        page->setProperty("contentY", 0);
        savePicture("07-models-small" + suffix);
    }
    show(2,
         ModelStatus::Failed{QString("Could not remove file: it is in a folder that cannot be written. ").repeated(9)
                             + QString("/a/path/without/blanks").repeated(12)},
         true);
    page->setProperty("contentY", 330);
    savePicture("07-models-long-failure-small-dark");
}

} // namespace

} // namespace sorvanta
