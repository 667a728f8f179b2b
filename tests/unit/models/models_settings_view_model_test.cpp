#include "models/models_settings_view_model.h"

#include "platform/error.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/stat.h>

using namespace sorvanta;

namespace {

class ModelsSettingsViewModelTest : public testing::Test {
protected:
    QString modelsFolder() const { return folder.path() + QStringLiteral("/Sorvanta/Models"); }
    void makeFile(const QString &name) const
    {
        QDir().mkpath(modelsFolder());
        QFile file(modelsFolder() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    static const ModelInfo &model(const QString &id)
    {
        for (const ModelInfo &info : modelCatalogue()) {
            if (info.id == id)
                return info;
        }
        throw std::runtime_error("no such model");
    }
    static bool isDownloaded(const Status &status) { return std::holds_alternative<ModelStatus::Downloaded>(status); }
    static bool isNotDownloaded(const Status &status)
    {
        return std::holds_alternative<ModelStatus::NotDownloaded>(status);
    }

    QTemporaryDir folder;
};

TEST_F(ModelsSettingsViewModelTest, anEmptyFolderGivesNoModel)
{
    const ModelsSettingsViewModel models(folder.path());
    EXPECT_TRUE(models.downloadedModels().isEmpty());
    for (const ModelInfo &info : models.availableModels())
        EXPECT_TRUE(isNotDownloaded(models.status(info)));
    EXPECT_TRUE(QDir(modelsFolder()).exists()) << "the folder is made";
}

TEST_F(ModelsSettingsViewModelTest, aFileOfTheRightNameCountsWhateverItHolds)
{
    makeFile(QStringLiteral("ggml-tiny.bin"));
    const ModelsSettingsViewModel models(folder.path());
    EXPECT_EQ(models.status(model(QStringLiteral("tiny"))),
              Status(ModelStatus::Downloaded{modelsFolder() + QStringLiteral("/ggml-tiny.bin")}));
    EXPECT_EQ(models.localURL(model(QStringLiteral("tiny"))), modelsFolder() + QStringLiteral("/ggml-tiny.bin"));
    EXPECT_FALSE(models.localURL(model(QStringLiteral("base"))));
}

TEST_F(ModelsSettingsViewModelTest, aPartFileCountsForNothing)
{
    makeFile(QStringLiteral("ggml-tiny.bin.part"));
    const ModelsSettingsViewModel models(folder.path());
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
}

TEST_F(ModelsSettingsViewModelTest, aModelThatIsNotKnownIsNotDownloaded)
{
    const ModelsSettingsViewModel models(folder.path());
    EXPECT_TRUE(isNotDownloaded(models.status(
        {.id = QStringLiteral("none"), .name = {}, .description = {}, .fileName = {}, .downloadURL = {}})));
}

TEST_F(ModelsSettingsViewModelTest, downloadedModelsStandInTheCataloguesOrder)
{
    makeFile(QStringLiteral("ggml-small.bin"));
    makeFile(QStringLiteral("ggml-base.bin"));
    const ModelsSettingsViewModel models(folder.path());
    const auto downloaded = models.downloadedModels();
    ASSERT_EQ(downloaded.size(), 2);
    EXPECT_EQ(downloaded[0].first.id, u"base"_qs);
    EXPECT_EQ(downloaded[1].first.id, u"small"_qs);
    EXPECT_EQ(downloaded[1].second, modelsFolder() + QStringLiteral("/ggml-small.bin"));
}

TEST_F(ModelsSettingsViewModelTest, aRefreshFollowsTheDisk)
{
    ModelsSettingsViewModel models(folder.path());
    QSignalSpy spy(&models, &ModelsSettingsViewModel::statusMapChanged);
    makeFile(QStringLiteral("ggml-tiny.bin"));
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny"))))) << "only the map is asked";
    models.refreshStatuses();
    EXPECT_TRUE(isDownloaded(models.status(model(QStringLiteral("tiny")))));
    EXPECT_EQ(spy.count(), 1);
    models.refreshStatuses();
    EXPECT_EQ(spy.count(), 1) << "nothing changed";
    QFile::remove(modelsFolder() + QStringLiteral("/ggml-tiny.bin"));
    models.refreshStatuses();
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
}

TEST_F(ModelsSettingsViewModelTest, deletingRemovesTheFile)
{
    makeFile(QStringLiteral("ggml-tiny.bin"));
    ModelsSettingsViewModel models(folder.path());
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
    EXPECT_FALSE(QFile::exists(modelsFolder() + QStringLiteral("/ggml-tiny.bin")));
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny"))))) << "also where there is no file";
}

TEST_F(ModelsSettingsViewModelTest, aFileThatCannotBeRemovedBecomesAFailureUntilTheNextRefresh)
{
    QDir().mkpath(modelsFolder() + QStringLiteral("/ggml-tiny.bin/full"));
    ModelsSettingsViewModel models(folder.path());
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    const Status status = models.status(model(QStringLiteral("tiny")));
    ASSERT_TRUE(std::holds_alternative<ModelStatus::Failed>(status));
    EXPECT_TRUE(
        std::get<ModelStatus::Failed>(status).text.startsWith(u"Could not remove file: “ggml-tiny.bin” couldn’t"_qs))
        << std::get<ModelStatus::Failed>(status).text.toStdString();
    EXPECT_TRUE(models.downloadedModels().isEmpty()) << "a failed model is not listed, though a file lies there";
    EXPECT_TRUE(QDir(modelsFolder() + QStringLiteral("/ggml-tiny.bin/full")).exists()) << "what lies there stays";
    EXPECT_TRUE(models.localURL(model(QStringLiteral("tiny"))));

    QDir(modelsFolder() + QStringLiteral("/ggml-tiny.bin")).removeRecursively();
    models.refreshStatuses();
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
}

TEST_F(ModelsSettingsViewModelTest, aRefreshThatFindsTheFileEndsAFailure)
{
    QDir().mkpath(modelsFolder() + QStringLiteral("/ggml-tiny.bin/full"));
    ModelsSettingsViewModel models(folder.path());
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    ASSERT_TRUE(std::holds_alternative<ModelStatus::Failed>(models.status(model(QStringLiteral("tiny")))));
    models.refreshStatuses();
    EXPECT_TRUE(isDownloaded(models.status(model(QStringLiteral("tiny")))));
}

TEST_F(ModelsSettingsViewModelTest, deletingAFailedModelEndsTheFailureWhetherItsFileIsThereOrNot)
{
    const QString inTheWay = modelsFolder() + QStringLiteral("/ggml-tiny.bin/full");
    for (const bool isFileThere : {true, false}) {
        QDir().mkpath(inTheWay);
        ModelsSettingsViewModel models(folder.path());
        models.deleteLocalCopy(model(QStringLiteral("tiny")));
        ASSERT_TRUE(std::holds_alternative<ModelStatus::Failed>(models.status(model(QStringLiteral("tiny")))));
        QDir(modelsFolder() + QStringLiteral("/ggml-tiny.bin")).removeRecursively();
        if (isFileThere)
            makeFile(QStringLiteral("ggml-tiny.bin"));
        models.deleteLocalCopy(model(QStringLiteral("tiny")));
        EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
        EXPECT_FALSE(QFile::exists(modelsFolder() + QStringLiteral("/ggml-tiny.bin")));
    }
}

TEST_F(ModelsSettingsViewModelTest, withoutAFolderForDataNothingIsDownloaded)
{
    ModelsSettingsViewModel models(std::nullopt);
    EXPECT_TRUE(models.downloadedModels().isEmpty());
    try {
        models.modelsDirectory();
        FAIL() << "there is no folder";
    } catch (const Error &error) {
        EXPECT_EQ(error.domain(), u"ModelDownload"_qs);
        EXPECT_EQ(error.code(), 0);
        EXPECT_EQ(error.localizedDescription(), u"Application Support directory unavailable."_qs);
    }
}

TEST_F(ModelsSettingsViewModelTest, aFolderThatCannotBeMadeLeavesAllNotDownloaded)
{
    QFile file(folder.filePath(QStringLiteral("Sorvanta")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const ModelsSettingsViewModel models(folder.path());
    EXPECT_TRUE(models.downloadedModels().isEmpty());
    EXPECT_THROW(models.modelsDirectory(), Error);
}

TEST_F(ModelsSettingsViewModelTest, aPlainFileInTheFoldersPlaceLeavesAllNotDownloadedAndStays)
{
    QDir().mkpath(folder.filePath(QStringLiteral("Sorvanta")));
    ASSERT_TRUE(QFile(modelsFolder()).open(QIODevice::WriteOnly));
    ModelsSettingsViewModel models(folder.path());
    EXPECT_EQ(models.modelsDirectory(), modelsFolder()) << "something lies there, so nothing is made";
    EXPECT_TRUE(models.downloadedModels().isEmpty());
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
    EXPECT_TRUE(QFileInfo(modelsFolder()).isFile());
}

TEST_F(ModelsSettingsViewModelTest, theFolderIsMadeForTheUserAlone)
{
    ::umask(022);
    const ModelsSettingsViewModel models(folder.path());
    for (const QString &made : {folder.filePath(QStringLiteral("Sorvanta")), modelsFolder()}) {
        struct stat status { };
        ASSERT_EQ(::stat(QFile::encodeName(made).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0700u) << made.toStdString();
    }
}

TEST_F(ModelsSettingsViewModelTest, theFoldersPathIsStandardized)
{
    makeFile(QStringLiteral("ggml-tiny.bin"));
    const ModelsSettingsViewModel models(folder.path() + QStringLiteral("//gone/.././"));
    EXPECT_EQ(models.modelsDirectory(), modelsFolder());
    EXPECT_EQ(models.localURL(model(QStringLiteral("tiny"))), modelsFolder() + QStringLiteral("/ggml-tiny.bin"));
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("gone"))));
}

TEST_F(ModelsSettingsViewModelTest, deletingWithoutAFolderForDataFindsNoFile)
{
    ModelsSettingsViewModel models(std::nullopt);
    models.deleteLocalCopy(model(QStringLiteral("tiny")));
    EXPECT_TRUE(isNotDownloaded(models.status(model(QStringLiteral("tiny")))));
}

} // namespace
