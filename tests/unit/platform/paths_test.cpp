#include "platform/paths.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

struct PathCase {
    QString path;
    QString lastComponent;
    QString folder;
    QString extension;
};

class Paths : public testing::TestWithParam<PathCase> { };

TEST_P(Paths, areTakenApartAsTextWithoutAskingTheDisk)
{
    EXPECT_EQ(lastPathComponent(GetParam().path), GetParam().lastComponent);
    EXPECT_EQ(parentFolder(GetParam().path), GetParam().folder);
    EXPECT_EQ(pathExtension(GetParam().path), GetParam().extension);
}

INSTANTIATE_TEST_SUITE_P(Table, Paths,
                         testing::Values(PathCase{"/music/talk.wav", "talk.wav", "/music", "wav"},
                                         PathCase{"/music/talk.tar.GZ", "talk.tar.GZ", "/music", "GZ"},
                                         PathCase{"/music.d/talk", "talk", "/music.d", ""},
                                         PathCase{"/music/talk.", "talk.", "/music", ""},
                                         PathCase{"/music/.profile", ".profile", "/music", ""},
                                         PathCase{"/music/", "music", "/", ""}, PathCase{"/music", "music", "/", ""},
                                         PathCase{"/", "/", "/", ""}, PathCase{"talk.m4a", "talk.m4a", "", "m4a"},
                                         PathCase{"/music/..", "..", "/music", ""},
                                         PathCase{"/music//a.b", "a.b", "/music/", "b"}, PathCase{"", "", "", ""}));

} // namespace
