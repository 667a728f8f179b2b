#include "export/run_exports.h"

#include "export/document_export.h"
#include "platform/file_system.h"
#include "support/fake_engine_bundle.h"
#include "support/fake_file_panels.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <QDir>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace sorvanta {

namespace {

class RunExport : public testing::Test {
protected:
    void transcribe(const QByteArray &commands)
    {
        run.start("/a.wav", engine.script(commands), "auto");
        ASSERT_TRUE(waitUntil([this] { return !run.isTranscribing(); }));
    }
    ExportMenuEntry *entry(qsizetype index) const
    {
        return qobject_cast<ExportMenuEntry *>(exports.menu()->entries().at(index));
    }
    QByteArray saved(qsizetype index)
    {
        entry(index)->choose();
        panels.answer(folder.filePath("file"));
        return readFile(folder.filePath("file"));
    }

    FakeEngineBundle engine;
    FakeFilePanels panels;
    QTemporaryDir folder;
    std::optional<QString> source = "/music/Harbour walk.m4a";
    TranscriptionRun run{{engine.resourceFolder(), false}, {.removeTemporaries = [] {}, .saveToHistory = [] {}}};
    RunExports exports{
        {.run = run, .panels = panels, .naming = transcriptionNaming(), .source = [this] { return source; }}};
};

const QByteArray timed = "print [00%3A00%3A00.000 --> 00%3A00%3A01.500]   - One%0A\n";

TEST_F(RunExport, theMenuFollowsTheRun)
{
    EXPECT_FALSE(exports.menu()->isEnabled());
    transcribe("print only words%0A\n");
    EXPECT_TRUE(exports.menu()->isEnabled());
    EXPECT_FALSE(entry(1)->isEnabled());
    transcribe(timed);
    EXPECT_TRUE(exports.menu()->isEnabled());
    EXPECT_TRUE(entry(1)->isEnabled());
    transcribe({});
    EXPECT_FALSE(exports.menu()->isEnabled());
    EXPECT_FALSE(entry(1)->isEnabled());
}

TEST_F(RunExport, theMenuIsEnabledWhileTheRunGoesOn)
{
    run.start("/a.wav", engine.script(timed + "sleep 60000\n"), "auto");
    ASSERT_TRUE(waitUntil([this] { return exports.menu()->isEnabled(); }));
    EXPECT_TRUE(run.isTranscribing());
    EXPECT_TRUE(entry(1)->isEnabled());
    EXPECT_EQ(saved(0), "- One");
    run.beginRun();
    EXPECT_FALSE(exports.menu()->isEnabled());
}

TEST_F(RunExport, aSaveProposesTheSourcesNameAndReportsInTheStatus)
{
    transcribe(timed);
    run.setError("earlier error");
    EXPECT_EQ(saved(1), "1\n00:00:00,000 --> 00:00:01,500\n- One\n");
    EXPECT_EQ(panels.saveRequests.first().name, "Harbour walk_transcription.srt");
    EXPECT_EQ(run.status(), "Saved SRT to file");
    EXPECT_EQ(run.error(), std::nullopt);
    source.reset();
    entry(0)->choose();
    EXPECT_EQ(panels.saveRequests.last().name, "transcript_transcription.txt");
}

TEST_F(RunExport, aFailureIsReportedInTheError)
{
    transcribe(timed);
    entry(0)->choose();
    panels.answer(folder.filePath("missing/file.txt"));
    EXPECT_EQ(run.error(), "Could not save TXT: The folder “missing” doesn’t exist.");
    EXPECT_EQ(run.status(), "Done");
}

TEST_F(RunExport, withStrippingTheDashesAreGoneFromTextAndSegments)
{
    transcribe(timed);
    EXPECT_EQ(saved(0), "- One");
    EXPECT_EQ(saved(2), "WEBVTT\n\n00:00:00.000 --> 00:00:01.500\n- One\n");
    run.setStripDashes(true);
    EXPECT_EQ(saved(0), "One");
    EXPECT_EQ(saved(2), "WEBVTT\n\n00:00:00.000 --> 00:00:01.500\nOne\n");
    EXPECT_EQ(saved(4), renderDocument(ExportFormat::docx, "One"));
    EXPECT_EQ(saved(5), renderDocument(ExportFormat::pdf, "One"));
}

TEST_F(RunExport, aDisabledEntryDoesNothing)
{
    transcribe("print only words%0A\n");
    entry(3)->choose();
    EXPECT_EQ(panels.saveRequests.size(), 0);
    EXPECT_EQ(run.error(), std::nullopt);
    EXPECT_EQ(run.status(), "Done");
}

} // namespace

} // namespace sorvanta
