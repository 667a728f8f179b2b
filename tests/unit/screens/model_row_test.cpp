#include "screens/models/model_row.h"

#include "models/download_text.h"
#include "support/printing.h"

#include <gtest/gtest.h>

namespace sorvanta {

namespace {

const ModelInfo &model(const QString &id)
{
    for (const ModelInfo &info : modelCatalogue()) {
        if (info.id == id)
            return info;
    }
    throw std::runtime_error("no such model");
}

ModelRow row(const Status &status, bool hasFile = false)
{
    return modelRow(model(u"tiny"_qs), status, hasFile, u"large-v3-turbo"_qs);
}

struct BadgeCase {
    QString id;
    QString recommendedID;
    QString recommendedBadge;
    QString nonEnglishBadge;
};

class ModelRowBadges : public testing::TestWithParam<BadgeCase> { };

TEST_P(ModelRowBadges, areThoseOfTheModel)
{
    const BadgeCase &given = GetParam();
    const ModelRow shown = modelRow(model(given.id), ModelStatus::NotDownloaded{}, false, given.recommendedID);
    EXPECT_EQ(shown.recommendedBadge, given.recommendedBadge);
    EXPECT_EQ(shown.nonEnglishBadge, given.nonEnglishBadge);
    EXPECT_EQ(shown.name, model(given.id).name);
    EXPECT_EQ(shown.description, model(given.id).description);
}

INSTANTIATE_TEST_SUITE_P(
    , ModelRowBadges,
    testing::Values(
        BadgeCase{u"large-v3-turbo"_qs, u"large-v3-turbo"_qs, u"Recommended"_qs, {}},
        BadgeCase{u"large-v3"_qs, u"large-v3-turbo"_qs, {}, u"Best for non-English"_qs},
        BadgeCase{u"medium"_qs, u"large-v3-turbo"_qs, {}, {}}, BadgeCase{u"base"_qs, u"large-v3-turbo"_qs, {}, {}},
        BadgeCase{u"small"_qs, u"large-v3-turbo"_qs, {}, {}}, BadgeCase{u"tiny"_qs, u"large-v3-turbo"_qs, {}, {}},
        BadgeCase{u"tiny"_qs, u"tiny"_qs, u"Recommended"_qs, {}}, BadgeCase{u"large-v3-turbo"_qs, u"tiny"_qs, {}, {}},
        BadgeCase{u"large-v3"_qs, u"large-v3"_qs, u"Recommended"_qs, u"Best for non-English"_qs},
        BadgeCase{u"tiny"_qs, {}, {}, {}}));

struct StatusCase {
    const char *name;
    Status status;
    bool hasFile;
    QString text;
    QString symbol;
    StatusTone::Tone tone;
    QStringList buttons;
    QString failureText;
    QString savedAsText;
    bool hasProgress;
};

void PrintTo(const StatusCase &given, std::ostream *out)
{
    *out << given.name;
}

const DownloadState half{
    .bytesReceived = 500'000'000, .totalBytesExpected = 1'000'000'000, .estimatedSecondsRemaining = 65};

class ModelRowStatus : public testing::TestWithParam<StatusCase> { };

TEST_P(ModelRowStatus, decidesWhatIsShownAndOffered)
{
    const StatusCase &given = GetParam();
    const ModelRow shown = row(given.status, given.hasFile);
    EXPECT_EQ(shown.statusText, given.text);
    EXPECT_EQ(shown.statusSymbol, given.symbol);
    EXPECT_EQ(shown.statusTone, given.tone);
    EXPECT_EQ(shown.failureText, given.failureText);
    EXPECT_EQ(shown.savedAsText, given.savedAsText);
    EXPECT_EQ(shown.hasProgress, given.hasProgress);
    EXPECT_EQ(!shown.byteLine.isEmpty(), given.hasProgress);
    QStringList buttons;
    if (shown.offersDownload)
        buttons << u"download"_qs;
    if (shown.offersReveal)
        buttons << u"reveal"_qs;
    if (shown.offersDelete)
        buttons << u"delete"_qs;
    if (shown.offersRetry)
        buttons << u"retry"_qs;
    EXPECT_EQ(buttons.join(u' '), given.buttons.join(u' '));
}

const QString savedAs = u"Saved as ggml-tiny.bin in Application Support."_qs;

INSTANTIATE_TEST_SUITE_P(, ModelRowStatus,
                         testing::Values(StatusCase{"not downloaded",
                                                    ModelStatus::NotDownloaded{},
                                                    false,
                                                    u"Not downloaded"_qs,
                                                    u"icloud.and.arrow.down"_qs,
                                                    StatusTone::Secondary,
                                                    {u"download"_qs},
                                                    {},
                                                    {},
                                                    false},
                                         StatusCase{"downloading",
                                                    ModelStatus::Downloading{half},
                                                    false,
                                                    u"Downloading 50%"_qs,
                                                    {},
                                                    StatusTone::Active,
                                                    {},
                                                    {},
                                                    {},
                                                    true},
                                         StatusCase{"downloading over an older file",
                                                    ModelStatus::Downloading{half},
                                                    true,
                                                    u"Downloading 50%"_qs,
                                                    {},
                                                    StatusTone::Active,
                                                    {},
                                                    {},
                                                    {},
                                                    true},
                                         StatusCase{"downloading, before anything is known",
                                                    ModelStatus::Downloading{},
                                                    false,
                                                    u"Downloading 0%"_qs,
                                                    {},
                                                    StatusTone::Active,
                                                    {},
                                                    {},
                                                    {},
                                                    true},
                                         StatusCase{"downloaded",
                                                    ModelStatus::Downloaded{u"/data/ggml-tiny.bin"_qs},
                                                    true,
                                                    u"Ready"_qs,
                                                    u"checkmark.circle.fill"_qs,
                                                    StatusTone::Good,
                                                    {u"reveal"_qs, u"delete"_qs},
                                                    {},
                                                    savedAs,
                                                    false},
                                         StatusCase{"downloaded, and gone since",
                                                    ModelStatus::Downloaded{u"/data/ggml-tiny.bin"_qs},
                                                    false,
                                                    u"Ready"_qs,
                                                    u"checkmark.circle.fill"_qs,
                                                    StatusTone::Good,
                                                    {u"reveal"_qs, u"delete"_qs},
                                                    {},
                                                    savedAs,
                                                    false},
                                         StatusCase{"failed",
                                                    ModelStatus::Failed{u"Server responded with 404"_qs},
                                                    false,
                                                    u"Failed"_qs,
                                                    u"exclamationmark.triangle.fill"_qs,
                                                    StatusTone::Bad,
                                                    {u"retry"_qs},
                                                    u"Server responded with 404"_qs,
                                                    {},
                                                    false},
                                         StatusCase{"failed with an older file",
                                                    ModelStatus::Failed{u"Server responded with 404"_qs},
                                                    true,
                                                    u"Failed"_qs,
                                                    u"exclamationmark.triangle.fill"_qs,
                                                    StatusTone::Bad,
                                                    {u"delete"_qs, u"retry"_qs},
                                                    u"Server responded with 404"_qs,
                                                    {},
                                                    false}));

struct ProgressCase {
    qint64 received;
    qint64 expected;
    bool isIndeterminate;
    double progress;
};

class ModelRowProgress : public testing::TestWithParam<ProgressCase> { };

TEST_P(ModelRowProgress, isAFractionWhereTheSizeIsKnown)
{
    const ProgressCase &given = GetParam();
    const DownloadState state{
        .bytesReceived = given.received, .totalBytesExpected = given.expected, .estimatedSecondsRemaining = 312};
    const ModelRow shown = row(ModelStatus::Downloading{state});
    EXPECT_EQ(shown.isIndeterminate, given.isIndeterminate);
    EXPECT_EQ(shown.progress, given.progress);
    EXPECT_EQ(shown.statusText, percentLine(state));
    EXPECT_EQ(shown.byteLine, byteLine(state));
}

INSTANTIATE_TEST_SUITE_P(, ModelRowProgress,
                         testing::Values(ProgressCase{0, 0, true, 0}, ProgressCase{700, 0, true, 0},
                                         ProgressCase{700, -1, true, 0}, ProgressCase{0, 1, false, 0},
                                         ProgressCase{1, 1, false, 1}, ProgressCase{250, 1000, false, 0.25},
                                         ProgressCase{1'330'000'000, 3'100'000'000, false, 1.33 / 3.1}));

TEST(ModelRow, hasTheDownloadsFiguresInItsByteLine)
{
    EXPECT_EQ(row(ModelStatus::Downloading{half}).byteLine, u"500 MB / 1 GB • ~1m 5s left"_qs);
    EXPECT_EQ(
        row(ModelStatus::Downloading{
                {.bytesReceived = 5'000'000, .totalBytesExpected = -1, .estimatedSecondsRemaining = std::nullopt}})
            .byteLine,
        u"5 MB downloaded"_qs);
}

} // namespace

} // namespace sorvanta
