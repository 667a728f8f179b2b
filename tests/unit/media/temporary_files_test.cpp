#include "core/temporary_files.h"

#include "support/media_files.h"
#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

TEST(TemporaryFiles, holdNoneAtFirst)
{
    const TemporaryFiles files;
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(files.tempConvertedURLs(), QStringList());
}

TEST(TemporaryFiles, areRemovedAndForgotten)
{
    MediaFolder folder;
    const QString first = folder.write(u"1.wav"_qs, "1");
    const QString second = folder.write(u"2.wav"_qs, "2");
    folder.write(u"mine.wav"_qs, "3");
    TemporaryFiles files;
    files.record(first);
    EXPECT_EQ(files.tempConvertedURL(), first);
    files.record(second);
    EXPECT_EQ(files.tempConvertedURL(), second);
    EXPECT_EQ(files.tempConvertedURLs(), (QStringList{first, second}));
    files.removeTemporaries();
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(files.tempConvertedURLs(), QStringList());
    EXPECT_EQ(folder.names(), QStringList{u"mine.wav"_qs});
}

TEST(TemporaryFiles, aFailureToRemoveIsIgnored)
{
    MediaFolder folder;
    TemporaryFiles files;
    files.record(folder.path(u"gone.wav"_qs));
    files.record(folder.write(u"here.wav"_qs, "1"));
    files.removeTemporaries();
    EXPECT_EQ(files.tempConvertedURLs(), QStringList());
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(TemporaryFiles, changeHandsAtTheEndOfTheList)
{
    MediaFolder folder;
    TemporaryFiles files;
    files.record(folder.write(u"1.wav"_qs, "1"));
    {
        TemporaryFiles made;
        made.record(folder.write(u"2.wav"_qs, "2"));
        files.takeOver(made);
        EXPECT_EQ(made.tempConvertedURLs(), QStringList());
    }
    EXPECT_EQ(files.tempConvertedURLs(), (QStringList{folder.path(u"1.wav"_qs), folder.path(u"2.wav"_qs)}));
    EXPECT_EQ(folder.names(), (QStringList{u"1.wav"_qs, u"2.wav"_qs}));
}

TEST(TemporaryFiles, goWithTheLastWhoKnowsThem)
{
    MediaFolder folder;
    {
        TemporaryFiles files;
        {
            TemporaryFiles copy = files;
            copy.record(folder.write(u"1.wav"_qs, "1"));
        }
        EXPECT_EQ(folder.names(), QStringList{u"1.wav"_qs});
        EXPECT_EQ(files.tempConvertedURL(), folder.path(u"1.wav"_qs));
    }
    EXPECT_EQ(folder.names(), QStringList());
}

} // namespace
