#include "export/export_menu.h"

#include "support/printing.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class RecordedActions : public ExportActions {
public:
    void save(ExportFormat format) override { done << "save " + fileExtension(format); }
    void download(ExportFormat format) override { done << "download " + fileExtension(format); }
    QStringList done;
};

ExportMenuEntry *entry(const ExportMenu &menu, qsizetype index)
{
    return qobject_cast<ExportMenuEntry *>(menu.entries().at(index));
}

ExportMenu *submenu(const ExportMenu &menu, const QString &label)
{
    for (qsizetype i = 0; i < menu.entries().size(); ++i) {
        if (entry(menu, i)->submenu() && entry(menu, i)->label() == label)
            return entry(menu, i)->submenu();
    }
    throw std::runtime_error("There is no submenu " + label.toStdString());
}

QStringList labels(const ExportMenu &menu)
{
    QStringList result;
    for (qsizetype i = 0; i < menu.entries().size(); ++i)
        result << (entry(menu, i)->isDivider() ? "—" : entry(menu, i)->label());
    return result;
}

QStringList symbols(const ExportMenu &menu)
{
    QStringList result;
    for (qsizetype i = 0; i < menu.entries().size(); ++i)
        result << entry(menu, i)->symbol();
    return result;
}

/// The labels of the nine formats that can be chosen.
QStringList enabledFormats(const ExportMenu &menu)
{
    QStringList result;
    for (qsizetype i = 0; i < 9; ++i) {
        if (entry(menu, i)->isEnabled())
            result << entry(menu, i)->label();
    }
    return result;
}

const QStringList formats{"TXT", "SRT", "VTT", "CSV", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON"};
const QStringList untimedFormats{"TXT", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON"};
const QStringList untimedInABatch{"TXT", "CSV", "DOCX", "PDF", "Markdown (.md)", "HTML", "JSON"};
const QString downloads = "Download to Downloads";

class Menus : public testing::Test {
protected:
    OnFormat exportAll()
    {
        return [this](ExportFormat format) { actions.done << "all " + fileExtension(format); };
    }

    RecordedActions actions;
    QObject owner;
    ExportMenu &transcription = *newTranscriptionExportMenu(actions, &owner);
    ExportMenu &batch = *newBatchExportMenu(actions, exportAll(), &owner);
    ExportMenu &header = *newExportAllMenu(exportAll(), &owner);
    ExportMenu &history = *newHistoryExportMenu(actions, &owner);
};

TEST_F(Menus, haveTheirLabelsAndSymbols)
{
    EXPECT_EQ(transcription.label(), "Export");
    EXPECT_EQ(transcription.symbol(), "");
    EXPECT_EQ(batch.label(), "Export");
    EXPECT_EQ(batch.symbol(), "");
    EXPECT_EQ(header.label(), "Export All");
    EXPECT_EQ(header.symbol(), "");
    EXPECT_EQ(history.label(), "Export");
    EXPECT_EQ(history.symbol(), "square.and.arrow.down");
}

TEST_F(Menus, ofATranscriptionHoldNineFormatsADividerAndTheDownloads)
{
    EXPECT_EQ(labels(transcription), formats + QStringList({"—", downloads}));
    EXPECT_EQ(labels(*submenu(transcription, downloads)), formats);
    EXPECT_EQ(symbols(transcription), QStringList(QList<QString>(11)));
}

TEST_F(Menus, ofABatchHaveExportAllBetweenTwoDividers)
{
    EXPECT_EQ(labels(batch), formats + QStringList({"—", "Export All", "—", downloads}));
    EXPECT_EQ(labels(*submenu(batch, "Export All")), formats);
    EXPECT_EQ(labels(*submenu(batch, downloads)), formats);
    EXPECT_EQ(labels(header), formats);
    EXPECT_EQ(symbols(batch), QStringList(QList<QString>(13)));
}

TEST_F(Menus, ofTheHistoryShowSymbolsButNotInTheSubmenu)
{
    EXPECT_EQ(labels(history), formats + QStringList({"—", downloads}));
    EXPECT_THAT(symbols(history), ElementsAre("doc.plaintext", "captions.bubble", "text.badge.plus", "tablecells",
                                              "doc.richtext", "doc.richtext.fill", "doc.text.magnifyingglass",
                                              "chevron.left.forwardslash.chevron.right", "curlybraces", "", ""));
    EXPECT_EQ(symbols(*submenu(history, downloads)), QStringList(QList<QString>(9)));
}

TEST_F(Menus, doWhatTheirEntriesSay)
{
    for (ExportMenu *menu : {&transcription, &batch, &header, &history})
        menu->setState({true, true, true, true, true});
    const auto chooseAll = [this](const ExportMenu &menu) {
        actions.done.clear();
        for (qsizetype i = 0; i < menu.entries().size(); ++i)
            entry(menu, i)->choose();
        return actions.done;
    };
    const auto each = [](const QString &word) {
        QStringList result;
        for (const char *extension : {"txt", "srt", "vtt", "csv", "docx", "pdf", "md", "html", "json"})
            result << word + ' ' + extension;
        return result;
    };
    for (const ExportMenu *menu : {&transcription, &batch, &history}) {
        EXPECT_EQ(chooseAll(*menu), each("save"));
        EXPECT_EQ(chooseAll(*submenu(*menu, downloads)), each("download"));
    }
    EXPECT_EQ(chooseAll(*submenu(batch, "Export All")), each("all"));
    EXPECT_EQ(chooseAll(header), each("all"));
}

TEST_F(Menus, ofATranscriptionAreDisabledWithoutText)
{
    for (ExportMenu *menu : {&transcription, &batch}) {
        EXPECT_FALSE(menu->isEnabled());
        menu->setState({.hasContent = true});
        EXPECT_TRUE(menu->isEnabled());
        menu->setState({.hasSegments = true, .hasResults = true});
        EXPECT_FALSE(menu->isEnabled());
    }
}

TEST_F(Menus, ofATranscriptionEnableTimedFormatsWithSegments)
{
    for (ExportMenu *menu : {&transcription, &batch}) {
        for (const bool hasContent : {false, true}) {
            menu->setState({.hasContent = hasContent, .anyResultHasContent = true, .anyResultHasSegments = true});
            EXPECT_EQ(enabledFormats(*menu), untimedFormats);
            EXPECT_EQ(enabledFormats(*submenu(*menu, downloads)), untimedFormats);
            menu->setState({.hasContent = hasContent, .hasSegments = true});
            EXPECT_EQ(enabledFormats(*menu), formats);
            EXPECT_EQ(enabledFormats(*submenu(*menu, downloads)), formats);
        }
    }
}

TEST_F(Menus, forAllResultsEnableWhatOneResultHas)
{
    for (ExportMenu *menu : {&header, submenu(batch, "Export All")}) {
        ExportMenu *const whole = menu == &header ? menu : &batch;
        whole->setState({.hasContent = true, .hasSegments = true, .hasResults = true});
        EXPECT_EQ(enabledFormats(*menu), QStringList());
        whole->setState({.anyResultHasContent = true});
        EXPECT_EQ(enabledFormats(*menu), untimedInABatch);
        whole->setState({.anyResultHasSegments = true});
        EXPECT_EQ(enabledFormats(*menu), QStringList({"SRT", "VTT"}));
    }
    header.setState({.hasContent = true, .anyResultHasContent = true});
    EXPECT_FALSE(header.isEnabled());
    header.setState({.hasResults = true});
    EXPECT_TRUE(header.isEnabled());
}

TEST_F(Menus, ofTheHistoryAskForContentToo)
{
    history.setState({});
    EXPECT_FALSE(history.isEnabled());
    EXPECT_EQ(enabledFormats(history), QStringList("TXT"));
    history.setState({.hasContent = true});
    EXPECT_TRUE(history.isEnabled());
    EXPECT_EQ(enabledFormats(history), untimedFormats);
    EXPECT_EQ(enabledFormats(*submenu(history, downloads)), untimedFormats);
    history.setState({.hasSegments = true});
    EXPECT_FALSE(history.isEnabled());
    EXPECT_EQ(enabledFormats(history), QStringList({"TXT", "SRT", "VTT", "CSV"}));
    EXPECT_EQ(enabledFormats(*submenu(history, downloads)), QStringList({"TXT", "SRT", "VTT", "CSV"}));
    history.setState({.hasContent = true, .hasSegments = true});
    EXPECT_EQ(enabledFormats(history), formats);
}

TEST_F(Menus, doNothingForADisabledEntryOrADivider)
{
    entry(transcription, 1)->choose();
    entry(transcription, 9)->choose();
    entry(transcription, 10)->choose();
    EXPECT_EQ(actions.done, QStringList());
}

TEST_F(Menus, announceOnlyWhatChanges)
{
    QSignalSpy menuChanged(&transcription, &ExportMenu::isEnabledChanged);
    QSignalSpy plainChanged(entry(transcription, 0), &ExportMenuEntry::isEnabledChanged);
    QSignalSpy timedChanged(entry(transcription, 1), &ExportMenuEntry::isEnabledChanged);
    transcription.setState({.hasContent = true});
    transcription.setState({.hasContent = true});
    transcription.setState({.hasContent = true, .hasSegments = true});
    EXPECT_EQ(menuChanged.count(), 1);
    EXPECT_EQ(plainChanged.count(), 0);
    EXPECT_EQ(timedChanged.count(), 1);
}

} // namespace

} // namespace sorvanta
