#include "app/content_view.h"

#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace sorvanta;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

/// Runs of the application, one after the other, in a home of their own.
class ContentViewRuns : public testing::Test {
protected:
    QStringList run(const QStringList &steps)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), home.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"), dataFolder());
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(SORVANTA_CONTENT_VIEW_RUN), steps);
        EXPECT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
        return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    }

    QString dataFolder() const { return home.filePath(QStringLiteral("data")); }
    QStringList dataFolders() const { return QDir(dataFolder()).entryList(QDir::Dirs | QDir::NoDotAndDotDot); }
    QByteArray userDefaults() const
    {
        QFile file(home.filePath(QStringLiteral("config/Sorvanta/Sorvanta.conf")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir home;
};

TEST_F(ContentViewRuns, theFirstRunStandsAtTheGateAndTouchesNoFolder)
{
    EXPECT_THAT(run({"state"}), ElementsAre("not accepted, row 0, no screens"));
    EXPECT_THAT(dataFolders(), ElementsAre());
    EXPECT_EQ(userDefaults(), "");
}

TEST_F(ContentViewRuns, acceptanceMakesTheScreensAndTheirFoldersAtOnce)
{
    EXPECT_THAT(run({"accept", "state", "signals"}), ElementsAre("accepted, row 0, screens", "1 0"));
    EXPECT_THAT(dataFolders(), UnorderedElementsAre("Sorvanta", "sorvanta"));
    EXPECT_TRUE(QDir(dataFolder() + "/Sorvanta/Models").exists());
    EXPECT_TRUE(QDir(dataFolder() + "/sorvanta/transcripts").exists());
    EXPECT_TRUE(QDir(dataFolder() + "/sorvanta/recordings").exists());
    EXPECT_EQ(userDefaults(), "[General]\nhasAcceptedPolicies=true\n");
}

TEST_F(ContentViewRuns, everyScreenThatTranscribesChoosesItsModelBeforeItIsEverSelected)
{
    EXPECT_THAT(run({"accept", "models?"}), ElementsAre("none none none none"));
    for (const char *name : {"ggml-small.bin", "ggml-base.bin"}) {
        QFile file(dataFolder() + "/Sorvanta/Models/" + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_THAT(run({"models?"}), ElementsAre("base base base base"));
}

TEST_F(ContentViewRuns, acceptanceIsAskedForOnlyOnce)
{
    run({"accept"});
    EXPECT_THAT(run({"state", "accept", "signals"}), ElementsAre("accepted, row 0, screens", "0 0"));
    EXPECT_THAT(run({"state"}), ElementsAre("accepted, row 0, screens"));
}

TEST_F(ContentViewRuns, acceptanceHoldsAlsoForARunThatEndsWithoutTidyingUp)
{
    run({"accept", "vanish"});
    EXPECT_THAT(run({"state"}), ElementsAre("accepted, row 0, screens"));
}

TEST_F(ContentViewRuns, quittingAtTheGateStoresNothing)
{
    EXPECT_THAT(run({"state", "quit"}), ElementsAre("not accepted, row 0, no screens"));
    EXPECT_EQ(userDefaults(), "");
    EXPECT_THAT(dataFolders(), ElementsAre());
    EXPECT_THAT(run({"state"}), ElementsAre("not accepted, row 0, no screens"));
}

TEST_F(ContentViewRuns, eachRunBeginsOnTheFileScreen)
{
    EXPECT_THAT(run({"accept", "select", "4", "state"}), ElementsAre("accepted, row 4, screens"));
    EXPECT_THAT(run({"state", "select", "-1"}), ElementsAre("accepted, row 0, screens"));
    EXPECT_THAT(run({"state"}), ElementsAre("accepted, row 0, screens"));
    EXPECT_EQ(userDefaults(), "[General]\nhasAcceptedPolicies=true\n") << "the only thing that is stored";
}

TEST_F(ContentViewRuns, aSectionKeepsItsStateWhileAnotherIsSelected)
{
    EXPECT_THAT(run({"accept", "language", "17", "select", "6", "select", "-1", "language?", "select", "0", "language?",
                     "signals"}),
                ElementsAre("de", "de", "1 3"));
}

TEST_F(ContentViewRuns, aRowThatIsNotThereClearsTheSelection)
{
    EXPECT_THAT(run({"accept", "select", "7", "state", "select", "6", "state", "select", "-5", "state"}),
                ElementsAre("accepted, row -1, screens", "accepted, row 6, screens", "accepted, row -1, screens"));
}

TEST_F(ContentViewRuns, aUserDefaultThatSaysNoLeavesTheGateClosed)
{
    QDir().mkpath(home.filePath("config/Sorvanta"));
    QFile file(home.filePath("config/Sorvanta/Sorvanta.conf"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\nhasAcceptedPolicies=false\n");
    file.close();
    EXPECT_THAT(run({"state"}), ElementsAre("not accepted, row 0, no screens"));
    EXPECT_THAT(dataFolders(), ElementsAre());
}

} // namespace
