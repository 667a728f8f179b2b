#include "platform/file_errors.h"

#include "support/printing.h"

#include <QStorageInfo>

#include <gtest/gtest.h>

#include <cerrno>

using namespace sorvanta;

namespace {

struct ErrorCase {
    const char *name;
    Error error;
    int code;
    QString sentence;
};

void PrintTo(const ErrorCase &errorCase, std::ostream *out)
{
    *out << errorCase.name;
}

class FileErrors : public testing::TestWithParam<ErrorCase> { };

TEST_P(FileErrors, haveTheCodeAndTheSentenceOfTheSystemError)
{
    EXPECT_EQ(GetParam().error.domain(), "NSCocoaErrorDomain");
    EXPECT_EQ(GetParam().error.code(), GetParam().code);
    EXPECT_EQ(GetParam().error.localizedDescription(), GetParam().sentence);
}

const QString path = "/folder/talk.txt";

INSTANTIATE_TEST_SUITE_P(
    Reading, FileErrors,
    testing::Values(ErrorCase{"ENOENT", readingError(path, ENOENT), 260,
                              "The file “talk.txt” couldn’t be opened because there is no such file."},
                    ErrorCase{"EACCES", readingError(path, EACCES), 257,
                              "The file “talk.txt” couldn’t be opened because you don’t have permission to view it."},
                    ErrorCase{"EPERM", readingError(path, EPERM), 257,
                              "The file “talk.txt” couldn’t be opened because you don’t have permission to view it."},
                    ErrorCase{"ENAMETOOLONG", readingError(path, ENAMETOOLONG), 258,
                              "The file “talk.txt” couldn’t be opened."},
                    ErrorCase{"EFBIG", readingError(path, EFBIG), 263, "The file “talk.txt” couldn’t be opened."},
                    ErrorCase{"EIO", readingError(path, EIO), 256, "The file “talk.txt” couldn’t be opened."}));

INSTANTIATE_TEST_SUITE_P(
    Writing, FileErrors,
    testing::Values(
        ErrorCase{"ENOENT", writingError(path, ENOENT), 4, "The folder “folder” doesn’t exist."},
        ErrorCase{"EACCES", writingError(path, EACCES), 513,
                  "You don’t have permission to save the file “talk.txt” in the folder “folder”."},
        ErrorCase{"EPERM", writingError(path, EPERM), 513,
                  "You don’t have permission to save the file “talk.txt” in the folder “folder”."},
        ErrorCase{"ENAMETOOLONG", writingError(path, ENAMETOOLONG), 514,
                  "The file “talk.txt” couldn’t be saved in the folder “folder”."},
        ErrorCase{"EEXIST", writingError(path, EEXIST), 516,
                  "The file “talk.txt” couldn’t be saved in the folder “folder” because a file with the same name "
                  "already exists."},
        ErrorCase{"EIO", writingError(path, EIO), 512,
                  "The file “talk.txt” couldn’t be saved in the folder “folder”."}));

INSTANTIATE_TEST_SUITE_P(
    Removing, FileErrors,
    testing::Values(ErrorCase{"ENOENT", removingError(path, ENOENT), 4, "“talk.txt” couldn’t be removed."},
                    ErrorCase{"EACCES", removingError(path, EACCES), 513,
                              "“talk.txt” couldn’t be removed because you don’t have permission to access it."},
                    ErrorCase{"EPERM", removingError(path, EPERM), 513,
                              "“talk.txt” couldn’t be removed because you don’t have permission to access it."},
                    ErrorCase{"EROFS", removingError(path, EROFS), 642, "“talk.txt” couldn’t be removed."},
                    ErrorCase{"ENOTEMPTY", removingError(path, ENOTEMPTY), 512, "“talk.txt” couldn’t be removed."}));

INSTANTIATE_TEST_SUITE_P(
    Copying, FileErrors,
    testing::Values(
        ErrorCase{"ENOENT", copyingError("/music/a.wav", path, ENOENT), 4,
                  "“a.wav” couldn’t be copied to “folder” because either the former doesn’t exist, or the folder "
                  "containing the latter doesn’t exist."},
        ErrorCase{"EEXIST", copyingError("/music/a.wav", path, EEXIST), 516,
                  "“a.wav” couldn’t be copied to “folder” because an item with the same name already exists."},
        ErrorCase{"EACCES", copyingError("/music/a.wav", path, EACCES), 513,
                  "You don’t have permission to save the file “talk.txt” in the folder “folder”."}));

INSTANTIATE_TEST_SUITE_P(
    Moving, FileErrors,
    testing::Values(
        ErrorCase{"ENOENT", movingError("/music/a.wav", path, ENOENT), 4,
                  "“a.wav” couldn’t be moved to “folder” because either the former doesn’t exist, or the folder "
                  "containing the latter doesn’t exist."},
        ErrorCase{"EEXIST", movingError("/music/a.wav", path, EEXIST), 516,
                  "“a.wav” couldn’t be moved to “folder” because an item with the same name already exists."},
        ErrorCase{"EACCES", movingError("/music/a.wav", path, EACCES), 513,
                  "You don’t have permission to save the file “talk.txt” in the folder “folder”."}));

INSTANTIATE_TEST_SUITE_P(Decoding, FileErrors,
                         testing::Values(ErrorCase{"format", incorrectFormatError(), 4864,
                                                   "The data couldn’t be read because it isn’t in the correct format."},
                                         ErrorCase{"missing", missingDataError(), 4865,
                                                   "The data couldn’t be read because it is missing."}));

TEST(FileErrors, nameTheVolumeThatIsFullOrReadOnly)
{
    const QString volume = QStorageInfo("/tmp").displayName();
    ASSERT_FALSE(volume.isEmpty());
    for (const int systemError : {ENOSPC, EDQUOT}) {
        const Error full = writingError("/tmp/talk.txt", systemError);
        EXPECT_EQ(full.code(), 640);
        EXPECT_EQ(full.localizedDescription(),
                  "You can’t save the file “talk.txt” because the volume “" + volume + "” is out of space.");
    }
    const Error readOnly = writingError("/tmp/talk.txt", EROFS);
    EXPECT_EQ(readOnly.code(), 642);
    EXPECT_EQ(readOnly.localizedDescription(),
              "You can’t save the file “talk.txt” because the volume “" + volume + "” is read only.");
}

TEST(FileErrors, tellOfMissingSpaceAlsoWhereNoVolumeIsKnown)
{
    const Error error = writingError("/no/such/folder/talk.txt", ENOSPC);
    EXPECT_EQ(error.code(), 640);
    EXPECT_EQ(error.localizedDescription(), "The file couldn’t be saved because there isn’t enough space.");
}

} // namespace
