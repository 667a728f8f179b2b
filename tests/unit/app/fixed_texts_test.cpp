#include "app/content_view.h"
#include "app/fixed_addresses.h"
#include "app/sidebar_item_type.h"
#include "app/support_text.h"
#include "app/version_text.h"
#include "platform/build_configuration.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QVariantMap>

using namespace sorvanta;

namespace {

TEST(VersionText, namesVersionAndBuild)
{
    EXPECT_EQ(versionText(u"1.0"_qs, u"1"_qs), u"Version 1.0 (1)"_qs);
}

TEST(VersionText, namesTheOneThatIsThere)
{
    EXPECT_EQ(versionText(u"1.0"_qs, {}), u"Version 1.0"_qs);
    EXPECT_EQ(versionText({}, u"42"_qs), u"Version 42"_qs);
}

TEST(VersionText, isTheWordAloneWithoutBoth)
{
    EXPECT_EQ(versionText({}, {}), u"Version"_qs);
}

TEST(VersionText, ofTheFrameIsThatOfTheBuild)
{
    const BuildConfiguration &build = buildConfiguration();
    EXPECT_EQ(ContentView::version(), versionText(build.shortVersion, build.buildVersion));
}

TEST(SupportText, saysWhereToWriteToAndWhat)
{
    EXPECT_EQ(supportText(u"help@example.invalid"_qs),
              u"If you run into any issues, please email me at help@example.invalid and include as many details as "
              "you can (what you did, what happened, screenshots if possible). That helps me fix the problem faster "
              "and support you better."_qs);
    EXPECT_EQ(modelIssueText(), u"For model issues, include which model and language you used."_qs);
    EXPECT_EQ(ContentView::helpText(), supportText(buildConfiguration().supportAddress));
    EXPECT_EQ(ContentView::modelText(), modelIssueText());
}

TEST(FixedAddresses, lieOnTheProductsWebSite)
{
    const QString site = buildConfiguration().webSite;
    EXPECT_EQ(privacyURL().toString(), site + u"/sorvanta-mac-os-app-privacy-policy/"_qs);
    EXPECT_EQ(termsURL().toString(), site + u"/sorvanta-mac-os-app-terms-of-service/"_qs);
    EXPECT_EQ(ContentView::privacyAddress(), privacyURL());
    EXPECT_EQ(ContentView::termsAddress(), termsURL());
}

struct Row {
    SidebarItemType type;
    const char *icon;
    const char *label;
};

class SidebarTable : public testing::TestWithParam<Row> { };

TEST_P(SidebarTable, hasItsRow)
{
    const Row &row = GetParam();
    const auto place = static_cast<std::size_t>(row.type);
    EXPECT_EQ(sidebarItems[place].type, row.type);
    EXPECT_STREQ(sidebarItems[place].icon, row.icon);
    EXPECT_STREQ(sidebarItems[place].label, row.label);
    const QVariantMap shown = ContentView::sections()[static_cast<qsizetype>(place)].toMap();
    EXPECT_EQ(shown[u"symbol"_qs].toString(), QLatin1String(row.icon));
    EXPECT_EQ(shown[u"label"_qs].toString(), QLatin1String(row.label));
}

INSTANTIATE_TEST_SUITE_P(
    , SidebarTable,
    testing::Values(Row{SidebarItemType::transcriptFromFile, "arrow.up.doc", "Transcript Audio From File"},
                    Row{SidebarItemType::recordAudio, "mic", "Record Audio to Transcript"},
                    Row{SidebarItemType::meetingRecorder, "waveform.badge.mic", "Record Meeting (System Audio)"},
                    Row{SidebarItemType::batchProcessing, "tray.full", "Batch Processing"},
                    Row{SidebarItemType::history, "clock", "History"},
                    Row{SidebarItemType::models, "network", "Models Settings"},
                    Row{SidebarItemType::support, "questionmark.circle", "Help"}));

TEST(SidebarItems, areSeven)
{
    EXPECT_EQ(sidebarItems.size(), 7U);
    EXPECT_EQ(ContentView::sections().size(), 7);
    EXPECT_EQ(static_cast<int>(SidebarItemType::transcriptFromFile), 0);
    EXPECT_EQ(static_cast<int>(SidebarItemType::support), 6);
}

} // namespace
