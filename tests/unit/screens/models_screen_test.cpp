#include "screens/models/models_settings_view.h"

#include "models/models_settings_view_model.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace sorvanta {

namespace {

using testing::ElementsAre;

constexpr int tiny = 5;
constexpr int base = 3;

class ModelsScreenTest : public testing::Test {
protected:
    QString path(const QString &name) const { return folder.path() + u"/Sorvanta/Models/"_qs + name; }
    void makeFile(const QString &name) const
    {
        QDir().mkpath(path({}));
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    /// Makes each download of that file fail before it asks any server.
    void blockDownload(const QString &name) const { QDir().mkpath(path(name + u".part/full"_qs)); }
    void makeScreen()
    {
        models = std::make_unique<ModelsSettingsViewModel>(folder.path());
        screen = std::make_unique<ModelsSettingsView>(ModelsSettingsView::Surroundings{
            .viewModel = *models,
            .recommendedModelID = u"large-v3-turbo"_qs,
            .revealFile = [this](const QString &file) { revealed << file; },
        });
    }
    const ModelRow &row(int place) const { return screen->rows()->rows()[place]; }
    QString statusText(int place) const { return row(place).statusText; }
    QStringList statusTexts() const
    {
        QStringList texts;
        for (const ModelRow &shown : screen->rows()->rows())
            texts << shown.statusText;
        return texts;
    }
    void waitForFailure(int place)
    {
        ASSERT_TRUE(waitUntil([this, place] { return statusText(place) == u"Failed"_qs; }));
    }

    QTemporaryDir folder;
    QStringList revealed;
    std::unique_ptr<ModelsSettingsViewModel> models;
    std::unique_ptr<ModelsSettingsView> screen;
};

TEST_F(ModelsScreenTest, showsTheCatalogueInItsOrderWithItsBadges)
{
    makeScreen();
    QStringList names;
    QStringList badges;
    for (const ModelRow &shown : screen->rows()->rows()) {
        names << shown.name;
        badges << shown.recommendedBadge + shown.nonEnglishBadge;
    }
    EXPECT_THAT(names,
                ElementsAre(u"Large V3 Turbo"_qs, u"Large V3"_qs, u"Medium"_qs, u"Base"_qs, u"Small"_qs, u"Tiny"_qs));
    EXPECT_THAT(badges,
                ElementsAre(u"Recommended"_qs, u"Best for non-English"_qs, QString(), QString(), QString(), QString()));
}

TEST_F(ModelsScreenTest, looksAtTheDiskWhenItComesOnShow)
{
    makeScreen();
    makeFile(u"ggml-tiny.bin"_qs);
    EXPECT_EQ(statusText(tiny), u"Not downloaded"_qs);
    screen->appear();
    EXPECT_EQ(statusText(tiny), u"Ready"_qs);
    EXPECT_EQ(row(tiny).savedAsText, u"Saved as ggml-tiny.bin in Application Support."_qs);
}

TEST_F(ModelsScreenTest, losesAFailureWithoutAFileWhenItComesOnShow)
{
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    waitForFailure(tiny);
    screen->appear();
    EXPECT_EQ(statusText(tiny), u"Not downloaded"_qs);
    EXPECT_EQ(row(tiny).failureText, QString());
}

TEST_F(ModelsScreenTest, announcesOnlyTheRowOfTheModelThatChanged)
{
    makeFile(u"ggml-tiny.bin"_qs);
    makeFile(u"ggml-base.bin"_qs);
    makeScreen();
    QSignalSpy changed(screen->rows(), &ModelRows::dataChanged);
    screen->deleteLocalCopy(base);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), base);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), base);
}

TEST_F(ModelsScreenTest, downloadsAModel)
{
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    EXPECT_EQ(statusText(tiny), u"Downloading 0%"_qs);
    EXPECT_TRUE(row(tiny).isIndeterminate);
    EXPECT_FALSE(row(tiny).offersDownload || row(tiny).offersReveal || row(tiny).offersDelete || row(tiny).offersRetry)
        << "a download cannot be stopped from here";
    EXPECT_THAT(models->activeDownloads().keys(), ElementsAre(u"tiny"_qs));
    waitForFailure(tiny);
}

TEST_F(ModelsScreenTest, doesNotStartADownloadThatRuns)
{
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    const auto tracker = models->activeDownloads().value(u"tiny"_qs);
    screen->download(tiny);
    EXPECT_EQ(models->activeDownloads().value(u"tiny"_qs), tracker) << "the first goes on";
    waitForFailure(tiny);
}

TEST_F(ModelsScreenTest, asksTheStatusWhetherADownloadRunsAndNothingElse)
{
    makeFile(u"ggml-tiny.bin"_qs);
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    const auto tracker = models->activeDownloads().value(u"tiny"_qs);
    ASSERT_NE(tracker, nullptr);
    screen->appear();
    EXPECT_EQ(statusText(tiny), u"Ready"_qs) << "an older file was found while the download runs";
    screen->deleteLocalCopy(tiny);
    EXPECT_TRUE(row(tiny).offersDownload);
    screen->download(tiny);
    EXPECT_EQ(statusText(tiny), u"Downloading 0%"_qs);
    EXPECT_NE(models->activeDownloads().value(u"tiny"_qs), tracker) << "a press of the button is never without effect";
    waitForFailure(tiny);
    EXPECT_TRUE(models->activeDownloads().isEmpty());
}

TEST_F(ModelsScreenTest, showsSeveralDownloadsAtOnce)
{
    blockDownload(u"ggml-tiny.bin"_qs);
    blockDownload(u"ggml-base.bin"_qs);
    makeScreen();
    screen->download(tiny);
    screen->download(base);
    EXPECT_THAT(statusTexts(), ElementsAre(u"Not downloaded"_qs, u"Not downloaded"_qs, u"Not downloaded"_qs,
                                           u"Downloading 0%"_qs, u"Not downloaded"_qs, u"Downloading 0%"_qs));
    EXPECT_EQ(models->activeDownloads().size(), 2);
    waitForFailure(tiny);
    waitForFailure(base);
}

TEST_F(ModelsScreenTest, tellsWhyADownloadFailedAndOffersARetry)
{
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    waitForFailure(tiny);
    EXPECT_EQ(row(tiny).failureText,
              std::get<ModelStatus::Failed>(models->status(models->availableModels()[tiny])).text);
    EXPECT_NE(row(tiny).failureText, QString());
    EXPECT_TRUE(row(tiny).offersRetry);
    EXPECT_FALSE(row(tiny).offersDelete);
    screen->download(tiny);
    EXPECT_EQ(statusText(tiny), u"Downloading 0%"_qs) << "a retry is a download";
    waitForFailure(tiny);
}

TEST_F(ModelsScreenTest, tellsThatThereIsNoFolderForModels)
{
    ModelsSettingsViewModel homeless(std::nullopt);
    ModelsSettingsView shown(
        {.viewModel = homeless, .recommendedModelID = u"large-v3-turbo"_qs, .revealFile = [](const QString &) {}});
    shown.download(tiny);
    EXPECT_EQ(shown.rows()->rows()[tiny].failureText, u"Application Support directory unavailable."_qs);
    EXPECT_TRUE(shown.rows()->rows()[tiny].offersRetry);
}

TEST_F(ModelsScreenTest, offersBothAfterAFailureWithAnOlderFileOnTheDisk)
{
    makeFile(u"ggml-tiny.bin"_qs);
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->download(tiny);
    waitForFailure(tiny);
    EXPECT_TRUE(row(tiny).offersDelete);
    EXPECT_TRUE(row(tiny).offersRetry);
    screen->deleteLocalCopy(tiny);
    EXPECT_EQ(statusText(tiny), u"Not downloaded"_qs);
    EXPECT_FALSE(QFile::exists(path(u"ggml-tiny.bin"_qs)));
}

TEST_F(ModelsScreenTest, deletesAModelWithoutAsking)
{
    makeFile(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->deleteLocalCopy(tiny);
    EXPECT_FALSE(QFile::exists(path(u"ggml-tiny.bin"_qs)));
    EXPECT_EQ(statusText(tiny), u"Not downloaded"_qs);
    EXPECT_TRUE(row(tiny).offersDownload);
}

TEST_F(ModelsScreenTest, turnsToNotDownloadedWithoutAMessageWhenTheFileHasAlreadyGone)
{
    makeFile(u"ggml-tiny.bin"_qs);
    makeScreen();
    ASSERT_TRUE(QFile::remove(path(u"ggml-tiny.bin"_qs)));
    screen->deleteLocalCopy(tiny);
    EXPECT_EQ(statusText(tiny), u"Not downloaded"_qs);
    EXPECT_EQ(row(tiny).failureText, QString());
}

TEST_F(ModelsScreenTest, tellsWhyAFileCouldNotBeRemovedAndStillOffersIt)
{
    QDir().mkpath(path(u"ggml-tiny.bin/full"_qs));
    makeScreen();
    screen->deleteLocalCopy(tiny);
    EXPECT_EQ(statusText(tiny), u"Failed"_qs);
    EXPECT_TRUE(row(tiny).failureText.startsWith(u"Could not remove file: "_qs)) << row(tiny).failureText.toStdString();
    EXPECT_TRUE(row(tiny).offersDelete);
    EXPECT_TRUE(row(tiny).offersRetry);
}

TEST_F(ModelsScreenTest, revealsTheFileOfADownloadedModel)
{
    makeFile(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->reveal(tiny);
    EXPECT_THAT(revealed, ElementsAre(path(u"ggml-tiny.bin"_qs)));
}

TEST_F(ModelsScreenTest, revealsNothingOfAModelThatIsNotDownloaded)
{
    makeFile(u"ggml-tiny.bin"_qs);
    blockDownload(u"ggml-tiny.bin"_qs);
    makeScreen();
    screen->reveal(base);
    screen->download(tiny);
    screen->reveal(tiny);
    waitForFailure(tiny);
    screen->reveal(tiny);
    EXPECT_THAT(revealed, ElementsAre());
}

} // namespace

} // namespace sorvanta
