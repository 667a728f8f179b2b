#include "platform/file_types.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

TEST(FileTypes, audioIsKnownByItsExtension)
{
    const QString audio =
        u"wav wave bwf mp3 mpga mp2 m4a m4b m4p m4r aac adts ac3 eac3 ec3 aif aiff aifc cdda caf flac au snd ul ulw "
        u"ulaw amr loas latm mid midi kar smf dls sf2 sd2 w64 wma wax ra ram aa aax ogg oga opus spx mka"_qs;
    for (const QString &extension : audio.split(u' ')) {
        EXPECT_TRUE(isAudioExtension(extension)) << extension.toStdString();
        EXPECT_FALSE(isMovieExtension(extension)) << extension.toStdString();
    }
}

TEST(FileTypes, moviesAreKnownByTheirExtensionAlsoWithSoundOnly)
{
    const QString movies =
        u"mov qt mp4 mpg4 m4v mpg mpeg mpe m15 m75 m2v ts mts m2ts dv dif avi vfw 3gp 3gpp sdv 3g2 3gp2 flc fli cel "
        u"webm wmv wm wmp wmx wvx flv f4v f4p f4a f4b rm rmvb mxf mkv ogv ogm vob m2t divx"_qs;
    for (const QString &extension : movies.split(u' ')) {
        EXPECT_TRUE(isMovieExtension(extension)) << extension.toStdString();
        EXPECT_FALSE(isAudioExtension(extension)) << extension.toStdString();
    }
}

TEST(FileTypes, caseDoesNotMatter)
{
    EXPECT_TRUE(isAudioExtension(u"MP3"_qs));
    EXPECT_TRUE(isAudioExtension(u"Flac"_qs));
    EXPECT_TRUE(isMovieExtension(u"MOV"_qs));
}

TEST(FileTypes, otherExtensionsAreNeither)
{
    for (const QString &extension :
         {u""_qs, u"txt"_qs, u"asf"_qs, u"m3u"_qs, u"m3u8"_qs, u"pls"_qs, u"wav "_qs, u".wav"_qs, u"wav mp3"_qs}) {
        EXPECT_FALSE(isAudioExtension(extension)) << extension.toStdString();
        EXPECT_FALSE(isMovieExtension(extension)) << extension.toStdString();
    }
}

TEST(FileTypes, thePanelOffersAllOfThemOnce)
{
    QStringList extensions = mediaExtensions();
    EXPECT_EQ(extensions.size(), 94);
    EXPECT_EQ(extensions.removeDuplicates(), 0);
    for (const QString &extension : extensions)
        EXPECT_TRUE(isAudioExtension(extension) || isMovieExtension(extension)) << extension.toStdString();
}

} // namespace
