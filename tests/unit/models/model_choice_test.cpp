#include "models/model_choice.h"

#include "models/models_settings_view_model.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace sorvanta;

namespace {

class ModelChoiceTest : public testing::Test {
protected:
    void makeFile(const QString &name)
    {
        QDir().mkpath(modelsFolder());
        QFile file(modelsFolder() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QString modelsFolder() const { return folder.path() + QStringLiteral("/Sorvanta/Models"); }

    QTemporaryDir folder;
    ModelsSettingsViewModel models{folder.path()};
    ModelChoice choice{models};
};

TEST_F(ModelChoiceTest, hasNothingToPickWithoutAModel)
{
    choice.refresh();
    EXPECT_FALSE(choice.selectedModelID());
    EXPECT_FALSE(choice.hasModels());
    EXPECT_EQ(choice.index(), -1);
    EXPECT_FALSE(choice.modelPath());
    EXPECT_EQ(choice.modelName(), u"Unknown model"_qs);
    EXPECT_EQ(choice.hint(), u"No models downloaded. Visit Models Settings to download a model into "
                             "Application Support/Sorvanta/Models."_qs);
}

TEST_F(ModelChoiceTest, beginsWithTheFirstOfTheCatalogue)
{
    makeFile(QStringLiteral("ggml-small.bin"));
    makeFile(QStringLiteral("ggml-base.bin"));
    EXPECT_FALSE(choice.selectedModelID());
    choice.refresh();
    EXPECT_EQ(choice.selectedModelID(), u"base"_qs);
    EXPECT_EQ(choice.names(), (QStringList{u"Base"_qs, u"Small"_qs}));
    EXPECT_EQ(choice.index(), 0);
    EXPECT_EQ(choice.modelName(), u"Base"_qs);
    EXPECT_EQ(choice.modelPath(), modelsFolder() + u"/ggml-base.bin"_qs);
    EXPECT_EQ(choice.hint(), u"Need another model? Open Models Settings to download it."_qs);
}

TEST_F(ModelChoiceTest, keepsAChoiceThatIsStillThere)
{
    makeFile(QStringLiteral("ggml-small.bin"));
    choice.refresh();
    makeFile(QStringLiteral("ggml-base.bin"));
    models.refreshStatuses();
    EXPECT_EQ(choice.selectedModelID(), u"small"_qs);
    choice.choose(0);
    EXPECT_EQ(choice.selectedModelID(), u"base"_qs);
    choice.choose(7);
    choice.choose(-1);
    EXPECT_EQ(choice.selectedModelID(), u"base"_qs);
}

TEST_F(ModelChoiceTest, fallsToTheFirstModelLeftAndThenToNone)
{
    makeFile(QStringLiteral("ggml-large-v3.bin"));
    makeFile(QStringLiteral("ggml-tiny.bin"));
    choice.refresh();
    EXPECT_EQ(choice.selectedModelID(), u"large-v3"_qs);
    models.deleteLocalCopy(modelCatalogue()[1]);
    EXPECT_EQ(choice.selectedModelID(), u"tiny"_qs) << "by the notification alone";
    models.deleteLocalCopy(modelCatalogue()[5]);
    EXPECT_FALSE(choice.selectedModelID());
    EXPECT_TRUE(choice.hint().startsWith(u"No models downloaded. "_qs));
}

TEST_F(ModelChoiceTest, takesUpAModelThatComes)
{
    choice.refresh();
    makeFile(QStringLiteral("ggml-tiny.bin"));
    models.refreshStatuses();
    EXPECT_EQ(choice.selectedModelID(), u"tiny"_qs);
}

TEST_F(ModelChoiceTest, screensChooseApartFromEachOther)
{
    makeFile(QStringLiteral("ggml-small.bin"));
    makeFile(QStringLiteral("ggml-base.bin"));
    ModelChoice other{models};
    choice.refresh();
    other.refresh();
    choice.choose(1);
    EXPECT_EQ(choice.selectedModelID(), u"small"_qs);
    EXPECT_EQ(other.selectedModelID(), u"base"_qs);
}

} // namespace
