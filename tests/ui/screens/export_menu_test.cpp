#include "export/export_menu.h"

#include "support/printing.h"
#include "support/waiting.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QQmlProperty>
#include <QTest>

#include <gmock/gmock.h>

namespace sorvanta {

namespace {

class RecordedActions : public ExportActions {
public:
    void save(ExportFormat format) override { done << "save " + fileExtension(format); }
    void download(ExportFormat format) override { done << "download " + fileExtension(format); }
    QStringList done;
};

const QStringList formats{"TXT", "SRT", "VTT", "CSV", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON"};
const ExportMenuState everything{true, true, true, true, true};

class ShownExportMenu : public UiTest {
protected:
    void showMenu(ExportMenu *menu, int width = 640, int height = 560)
    {
        content = menu;
        show("import QtQuick\nimport Sorvanta.Screens\n"
             "Item { id: page; required property ExportMenuContent content; property int buttonY: 20\n"
             "ExportMenu { objectName: 'button'; x: 20; y: page.buttonY; content: page.content } }",
             {{"content", QVariant::fromValue(menu)}, {"width", width}, {"height", height}});
    }
    void open()
    {
        tabTo(item("button"));
        press(Qt::Key_Space);
        settle();
    }
    /// The visible items of all menus that are open, in their order.
    QList<QQuickItem *> shownItems() const
    {
        QList<QQuickItem *> found;
        QList<QQuickItem *> waiting{window->contentItem()};
        while (!waiting.isEmpty()) {
            QQuickItem *candidate = waiting.takeFirst();
            if (!candidate->isVisible())
                continue;
            if (candidate->inherits("QQuickMenuItem") || candidate->inherits("QQuickMenuSeparator"))
                found << candidate;
            waiting = candidate->childItems() + waiting;
        }
        return found;
    }
    QStringList shownLabels() const
    {
        QStringList labels;
        for (const QQuickItem *shown : shownItems())
            labels << (shown->inherits("QQuickMenuSeparator") ? "—" : shown->property("text").toString());
        return labels;
    }
    QQuickItem *entry(const QString &label, int occurrence = 0) const
    {
        for (QQuickItem *shown : shownItems()) {
            if (shown->property("text").toString() == label && occurrence-- == 0)
                return shown;
        }
        throw std::runtime_error("There is no entry " + label.toStdString());
    }
    QString highlighted() const
    {
        QString label;
        for (const QQuickItem *shown : shownItems()) {
            if (shown->property("highlighted").toBool())
                label = shown->property("text").toString();
        }
        return label;
    }
    bool isOpen() const { return !shownItems().isEmpty(); }

    RecordedActions actions;
    QObject owner;
    ExportMenu *content = nullptr;
    ExportMenu *transcription = newTranscriptionExportMenu(actions, &owner);
    ExportMenu *history = newHistoryExportMenu(actions, &owner);
    ExportMenu *batch = newBatchExportMenu(
        actions, [this](ExportFormat format) { actions.done << "all " + fileExtension(format); }, &owner);
};

TEST_F(ShownExportMenu, isAButtonThatIsEnabledWithTheMenu)
{
    showMenu(transcription);
    EXPECT_EQ(item("button")->property("text").toString(), "Export");
    EXPECT_EQ(accessible(item("button"))->role(), QAccessible::Button);
    EXPECT_EQ(accessible(item("button"))->text(QAccessible::Name), "Export");
    EXPECT_FALSE(item("button")->isEnabled());
    click(item("button"));
    EXPECT_FALSE(isOpen());
    transcription->setState({.hasContent = true});
    EXPECT_TRUE(item("button")->isEnabled());
}

TEST_F(ShownExportMenu, ofTheHistoryShowsItsSymbolAndThoseOfItsEntries)
{
    history->setState(everything);
    showMenu(history);

    EXPECT_EQ(QQmlProperty::read(item("button"), "icon.name").toString(), "square.and.arrow.down");
    open();
    EXPECT_EQ(QQmlProperty::read(entry("TXT"), "icon.name").toString(), "doc.plaintext");
    EXPECT_EQ(QQmlProperty::read(entry("JSON"), "icon.name").toString(), "curlybraces");
    savePicture("export-menu-history");
    setDark(true);
    savePicture("export-menu-history-dark");
}

TEST_F(ShownExportMenu, showsItsEntriesInOrder)
{
    transcription->setState(everything);
    showMenu(transcription);
    open();
    EXPECT_EQ(shownLabels(), formats + QStringList({"—", "Download to Downloads"}));
    for (const QString &label : shownLabels()) {
        if (label != "—") {
            EXPECT_EQ(QQmlProperty::read(entry(label), "icon.name").toString(), "") << label.toStdString();
        }
    }
    savePicture("export-menu");
}

TEST_F(ShownExportMenu, ofABatchHasTwoSubmenus)
{
    batch->setState(everything);
    showMenu(batch);
    open();
    EXPECT_EQ(shownLabels(), formats + QStringList({"—", "Export All", "—", "Download to Downloads"}));
    pressAccessibly(entry("Export All"));
    settle();
    pressAccessibly(entry("PDF", 1));
    EXPECT_THAT(actions.done, testing::ElementsAre("all pdf"));
}

TEST_F(ShownExportMenu, isChosenFromByTheMouse)
{
    transcription->setState(everything);
    showMenu(transcription);
    click(item("button"));
    settle();
    click(entry("Markdown (.md)"));
    EXPECT_THAT(actions.done, testing::ElementsAre("save md"));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
}

TEST_F(ShownExportMenu, isClosedByASecondClickAndByAClickBesideIt)
{
    transcription->setState(everything);
    showMenu(transcription);
    click(item("button"));
    settle();
    EXPECT_TRUE(isOpen());
    click(item("button"));
    settle();
    EXPECT_FALSE(isOpen());
    click(item("button"));
    settle();
    EXPECT_TRUE(isOpen());
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, QPoint(600, 500));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_EQ(actions.done, QStringList());
}

TEST_F(ShownExportMenu, opensItsSubmenuByTheMouse)
{
    transcription->setState(everything);
    showMenu(transcription);
    click(item("button"));
    settle();
    click(entry("Download to Downloads"));
    EXPECT_TRUE(waitUntil([this] { return shownItems().size() == 20; }));
    settle();
    EXPECT_GE(place(entry("TXT", 1)).left(), place(entry("TXT")).right() - 20) << "beside its entry";
    savePicture("export-menu-downloads");
    setDark(true);
    savePicture("export-menu-downloads-dark");
    click(entry("VTT", 1));
    EXPECT_THAT(actions.done, testing::ElementsAre("download vtt"));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
}

TEST_F(ShownExportMenu, isGoneThroughAndChosenFromByKeys)
{
    transcription->setState({.hasContent = true});
    showMenu(transcription);
    open();
    QStringList seen;
    for (int step = 0; step < 7; ++step) {
        press(Qt::Key_Down);
        seen << highlighted();
    }
    EXPECT_THAT(seen,
                testing::ElementsAre("TXT", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON", "Download to Downloads"))
        << "what is disabled is passed over";
    press(Qt::Key_Up);
    EXPECT_EQ(highlighted(), "JSON");
    press(Qt::Key_Return);
    EXPECT_THAT(actions.done, testing::ElementsAre("save json"));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_TRUE(item("button")->hasActiveFocus());
}

TEST_F(ShownExportMenu, opensAndLeavesItsSubmenuByKeys)
{
    transcription->setState({.hasContent = true});
    showMenu(transcription);
    open();
    for (int step = 0; step < 7; ++step)
        press(Qt::Key_Down);
    press(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([this] { return shownItems().size() == 20; }));
    press(Qt::Key_Left);
    ASSERT_TRUE(waitUntil([this] { return shownItems().size() == 11; }));
    press(Qt::Key_Right);
    ASSERT_TRUE(waitUntil([this] { return shownItems().size() == 20; }));
    EXPECT_EQ(highlighted(), "TXT");
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_THAT(actions.done, testing::ElementsAre("download docx"));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
}

TEST_F(ShownExportMenu, isLeftByEscapeAndGivesTheFocusBack)
{
    transcription->setState(everything);
    showMenu(transcription);
    open();
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_TRUE(item("button")->hasActiveFocus());
    EXPECT_EQ(actions.done, QStringList());
}

TEST_F(ShownExportMenu, isReadOutEntryByEntry)
{
    transcription->setState({.hasContent = true});
    showMenu(transcription);
    pressAccessibly(item("button"));
    settle();
    for (QQuickItem *shown : shownItems()) {
        if (shown->inherits("QQuickMenuSeparator"))
            continue;
        EXPECT_EQ(accessible(shown)->role(), QAccessible::MenuItem);
        EXPECT_EQ(accessible(shown)->text(QAccessible::Name), shown->property("text").toString());
        EXPECT_FALSE(accessible(shown)->state().invisible);
    }
    QQuickItem *const menu = entry("TXT")->parentItem()->parentItem()->parentItem();
    EXPECT_EQ(accessible(menu)->role(), QAccessible::PopupMenu);
    EXPECT_EQ(accessible(menu)->text(QAccessible::Name), "Export");
    pressAccessibly(entry("SRT"));
    EXPECT_EQ(actions.done, QStringList()) << "a disabled entry";
    pressAccessibly(entry("Download to Downloads"));
    settle();
    pressAccessibly(entry("CSV", 1));
    EXPECT_EQ(actions.done, QStringList()) << "a disabled entry";
    pressAccessibly(entry("HTML", 1));
    EXPECT_THAT(actions.done, testing::ElementsAre("download html"));
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); }));
}

TEST_F(ShownExportMenu, followsTheStateWhileItIsOpen)
{
    transcription->setState({.hasContent = true});
    showMenu(transcription);
    open();
    EXPECT_FALSE(entry("SRT")->isEnabled());
    transcription->setState({.hasContent = true, .hasSegments = true});
    EXPECT_TRUE(entry("SRT")->isEnabled());
    transcription->setState({});
    EXPECT_TRUE(waitUntil([this] { return !isOpen(); })) << "there is nothing left to export";
}

TEST_F(ShownExportMenu, opensAboveItsButtonWhereThereIsMoreRoom)
{
    transcription->setState(everything);
    showMenu(transcription, 460, 440);
    open();
    EXPECT_GE(place(entry("TXT")).top(), place(item("button")).bottom());
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !isOpen(); }));
    root->setProperty("buttonY", 400);
    open();
    EXPECT_LE(place(entry("Download to Downloads")).bottom(), place(item("button")).top());
    EXPECT_GE(place(entry("TXT")).top(), 0);
    pressAccessibly(entry("Download to Downloads"));
    settle();
    EXPECT_LE(place(entry("JSON", 1)).bottom(), 440) << "the submenu stays in the window";
    EXPECT_LE(place(entry("JSON", 1)).right(), 460);
    savePicture("export-menu-small");
}

} // namespace

} // namespace sorvanta
