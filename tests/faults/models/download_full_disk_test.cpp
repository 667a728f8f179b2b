#include "models/models_settings_view_model.h"

#include "support/model_server.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTest>

using namespace sorvanta;

namespace {

/// Downloads onto a disk of one megabyte.
class FullDisk : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(disk.isEmpty()) << "there is no small disk: start this by with_small_disk.sh";
        ASSERT_TRUE(server.isRunning());
        models.emplace(disk);
        QObject::connect(&*models, &ModelsSettingsViewModel::statusMapChanged, &*models, [this] {
            const Status status = models->status(tiny(QString()));
            if (const auto *failed = std::get_if<ModelStatus::Failed>(&status))
                failures << failed->text;
        });
    }
    void TearDown() override { QDir(disk + u"/Sorvanta"_qs).removeRecursively(); }

    ModelInfo tiny(const QString &path) const
    {
        ModelInfo model = modelCatalogue().last();
        model.downloadURL = server.url(path);
        return model;
    }
    void expectTwoFailures(const QString &path)
    {
        models->startDownload(tiny(path));
        ASSERT_TRUE(waitUntil([this] { return failures.size() == 2; }));
        EXPECT_EQ(failures[0], u"You can’t save the file “ggml-tiny.bin.part” because the volume “"_qs + disk
                                   + u"” is out of space."_qs);
        EXPECT_EQ(failures[1], u"cancelled"_qs);
        EXPECT_TRUE(models->activeDownloads().isEmpty());
    }
    QStringList files() const { return QDir(disk + u"/Sorvanta/Models"_qs).entryList(QDir::Files); }

    const QString disk = qEnvironmentVariable("SORVANTA_SMALL_DISK");
    ModelServer server;
    std::optional<ModelsSettingsViewModel> models;
    QStringList failures;
};

TEST_F(FullDisk, leavesNoPartialFileAndARetryWithRoomWorks)
{
    expectTwoFailures(u"/whole?size=3000000"_qs);
    EXPECT_EQ(files(), QStringList());
    models->startDownload(tiny(u"/whole?size=300000"_qs));
    ASSERT_TRUE(waitUntil([this] { return models->activeDownloads().isEmpty(); }));
    EXPECT_EQ(models->status(tiny(QString())),
              Status(ModelStatus::Downloaded{disk + u"/Sorvanta/Models/ggml-tiny.bin"_qs}));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(FullDisk, leavesAnOlderFileAsItWas)
{
    QFile old(disk + u"/Sorvanta/Models/ggml-tiny.bin"_qs);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    expectTwoFailures(u"/unknown-size?size=3000000"_qs);
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "old");
}

} // namespace
