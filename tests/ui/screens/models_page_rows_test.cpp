#include "models_page_test.h"

#include "support/waiting.h"

#include <QAccessible>
#include <QSignalSpy>

namespace sorvanta {

namespace {

using testing::ElementsAre;

using ModelsPageRows = ModelsPageTest;

TEST_F(ModelsPageRows, standBelowTheTitleInTheCataloguesOrder)
{
    showPage();
    const QStringList spoken = spokenWords(accessible(window.get()));
    EXPECT_THAT(spoken.mid(0, 4),
                ElementsAre("Models",
                            "Download and manage bundled Whisper models. Files are stored in Application Support so "
                            "they persist between app runs.",
                            "Models", "Large V3 Turbo"));
    double bottom = 0;
    for (const Place place : {LargeTurbo, Large, Medium, Base, Small, Tiny}) {
        EXPECT_EQ(text(place, "name"), modelCatalogue()[place].name);
        EXPECT_GT(area(card(place)).top(), bottom);
        bottom = area(card(place)).bottom();
    }
}

TEST_F(ModelsPageRows, ofAModelThatIsNotDownloadedOfferTheDownload)
{
    showPage();
    EXPECT_THAT(words(Tiny),
                ElementsAre("Tiny", "Tiny", modelCatalogue()[Tiny].description, "Not downloaded", "Download Model"));
    EXPECT_EQ(part(Tiny, "statusSymbol")->property("symbol").toString(), "icloud.and.arrow.down");
    EXPECT_EQ(shownColor(Tiny, "status"), color("text2"));
    EXPECT_EQ(shownColor(Tiny, "statusSymbol"), color("text2"));
    EXPECT_EQ(shownColor(Tiny, "description"), color("text2"));
}

TEST_F(ModelsPageRows, ofADownloadShowABarAndNoButton)
{
    showPage();
    setStatus(Tiny, downloading(43'000'000, 100'000'000, 312));
    EXPECT_THAT(words(Tiny), ElementsAre("Tiny", "Tiny", modelCatalogue()[Tiny].description, "Downloading 43%",
                                         "Download of Tiny", "43 MB / 100 MB • ~5m 12s left"));
    EXPECT_FALSE(isShown(Tiny, "statusSymbol"));
    EXPECT_EQ(shownColor(Tiny, "status"), color("accentText"));
    EXPECT_EQ(shownColor(Tiny, "byteLine"), color("text2"));
    EXPECT_EQ(part(Tiny, "progressBar")->property("value").toDouble(), 0.43);
    EXPECT_FALSE(part(Tiny, "progressBar")->property("indeterminate").toBool());
}

TEST_F(ModelsPageRows, ofADownloadOfUnknownSizeShowAnIndeterminateBar)
{
    showPage();
    setStatus(Tiny, downloading(43'000'000, -1));
    EXPECT_THAT(words(Tiny).mid(3), ElementsAre("Downloading 0%", "Download of Tiny", "43 MB downloaded"));
    EXPECT_TRUE(part(Tiny, "progressBar")->property("indeterminate").toBool());
}

TEST_F(ModelsPageRows, ofADownloadedModelOfferItsFile)
{
    makeFile("ggml-tiny.bin");
    showPage();
    EXPECT_THAT(words(Tiny),
                ElementsAre("Tiny", "Tiny", modelCatalogue()[Tiny].description, "Ready", "Reveal in Finder",
                            "Delete Local Copy", "Saved as ggml-tiny.bin in Application Support."));
    EXPECT_EQ(part(Tiny, "statusSymbol")->property("symbol").toString(), "checkmark.circle.fill");
    EXPECT_EQ(shownColor(Tiny, "status"), color("success"));
    EXPECT_EQ(shownColor(Tiny, "statusSymbol"), color("success"));
}

TEST_F(ModelsPageRows, ofAFailureTellItAndOfferARetry)
{
    showPage();
    setStatus(Tiny, ModelStatus::Failed{"Server responded with 404"});
    EXPECT_THAT(words(Tiny), ElementsAre("Tiny", "Tiny", modelCatalogue()[Tiny].description, "Failed",
                                         "Server responded with 404", "Retry Download"));
    EXPECT_EQ(part(Tiny, "statusSymbol")->property("symbol").toString(), "exclamationmark.triangle.fill");
    EXPECT_EQ(shownColor(Tiny, "status"), color("danger"));
    EXPECT_EQ(shownColor(Tiny, "failure"), color("danger"));
}

TEST_F(ModelsPageRows, ofAFailureWithAnOlderFileOfferToDeleteItFirst)
{
    showPage();
    setStatus(Tiny, ModelStatus::Failed{"Server responded with 404"}, true);
    EXPECT_THAT(words(Tiny).mid(4), ElementsAre("Server responded with 404", "Delete Local Copy", "Retry Download"));
}

TEST_F(ModelsPageRows, showSeveralDownloadsAtOnce)
{
    showPage();
    setStatus(Large, downloading(1'000'000'000, 3'000'000'000, 60));
    setStatus(Base, downloading(10'000'000, 0));
    setStatus(Tiny, downloading(75'000'000, 75'000'000, 0));
    EXPECT_EQ(text(Large, "status"), "Downloading 33%");
    EXPECT_EQ(text(Base, "status"), "Downloading 0%");
    EXPECT_EQ(text(Tiny, "status"), "Downloading 100%");
    for (const Place place : {LargeTurbo, Large, Medium, Base, Small, Tiny})
        EXPECT_EQ(isShown(place, "progressBar"), place == Large || place == Base || place == Tiny);
}

TEST_F(ModelsPageRows, liveThroughAllStates)
{
    showPage();
    const QQuickItem *before = card(Tiny);
    const QQuickItem *neighbour = card(Small);
    setStatus(Tiny, downloading(1, 2));
    setStatus(Tiny, ModelStatus::Failed{"Error"});
    setStatus(Tiny, ModelStatus::Downloaded{"/x"});
    EXPECT_EQ(card(Tiny), before);
    EXPECT_EQ(card(Small), neighbour);
}

TEST_F(ModelsPageRows, wearTheirBadges)
{
    showPage();
    for (const Place place : {LargeTurbo, Large, Medium, Base, Small, Tiny}) {
        EXPECT_EQ(isShown(place, "recommendedBadge"), place == LargeTurbo);
        EXPECT_EQ(isShown(place, "nonEnglishBadge"), place == Large);
    }
    EXPECT_THAT(words(LargeTurbo).mid(1, 2), ElementsAre("Large V3 Turbo", "Recommended"));
    EXPECT_THAT(words(Large).mid(1, 2), ElementsAre("Large V3", "Best for non-English"));
    EXPECT_NEAR(pixel(part(LargeTurbo, "recommendedBadge"), 6, 13).red(), color("accent").red(), 8);
    EXPECT_NEAR(pixel(part(Large, "nonEnglishBadge"), 6, 13).red(), QColor("#4A4DB8").red(), 8);
}

TEST_F(ModelsPageRows, areWorkedByClicks)
{
    blockDownload("ggml-large-v3-turbo.bin");
    showPage();
    for (const char *button : {"downloadButton", "retryButton"}) {
        const QSignalSpy changed(part(LargeTurbo, "status"), SIGNAL(textChanged(QString)));
        click(part(LargeTurbo, button));
        ASSERT_TRUE(waitUntil([this] { return isShown(LargeTurbo, "retryButton"); }));
        EXPECT_EQ(changed.value(0).value(0), "Downloading 0%") << button;
        settle();
    }

    makeFile("ggml-large-v3-turbo.bin");
    settle();
    click(part(LargeTurbo, "revealButton"));
    EXPECT_THAT(revealed, ElementsAre(path("ggml-large-v3-turbo.bin")));
    click(part(LargeTurbo, "deleteButton"));
    EXPECT_EQ(text(LargeTurbo, "status"), "Not downloaded");
    EXPECT_FALSE(QFile::exists(path("ggml-large-v3-turbo.bin")));
}

TEST_F(ModelsPageRows, areAListOfNamedItemsForAScreenReader)
{
    makeFile("ggml-tiny.bin");
    showPage();
    QAccessibleInterface *const list = accessible(card(Tiny)->parentItem());
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), "Models");
    ASSERT_EQ(list->childCount(), 6);
    for (int place = 0; place < 6; ++place) {
        EXPECT_EQ(list->child(place)->role(), QAccessible::ListItem);
        EXPECT_EQ(list->child(place)->text(QAccessible::Name), modelCatalogue()[place].name);
    }
    for (const char *button : {"revealButton", "deleteButton"}) {
        QAccessibleInterface *const shown = accessible(part(Tiny, button));
        EXPECT_EQ(shown->role(), QAccessible::Button);
        EXPECT_EQ(shown->text(QAccessible::Description), "Tiny") << "the same words stand in other rows";
        EXPECT_TRUE(shown->state().focusable);
    }
    EXPECT_EQ(accessible(part(Tiny, "name"))->role(), QAccessible::Heading);
    setStatus(Tiny, downloading(3, 4));
    QAccessibleInterface *const bar = accessible(part(Tiny, "progressBar"));
    EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
    EXPECT_EQ(bar->text(QAccessible::Name), "Download of Tiny");
    setStatus(Tiny, ModelStatus::Failed{"Error"});
    EXPECT_EQ(accessible(part(Tiny, "failure"))->role(), QAccessible::AlertMessage);
}

TEST_F(ModelsPageRows, arePressedByAScreenReader)
{
    makeFile("ggml-tiny.bin");
    showPage();
    pressAccessibly(part(Tiny, "revealButton"));
    EXPECT_THAT(revealed, ElementsAre(path("ggml-tiny.bin")));
    pressAccessibly(part(Tiny, "deleteButton"));
    EXPECT_EQ(text(Tiny, "status"), "Not downloaded");
    blockDownload("ggml-tiny.bin");
    pressAccessibly(part(Tiny, "downloadButton"));
    EXPECT_EQ(text(Tiny, "status"), "Downloading 0%");
    ASSERT_TRUE(waitUntil([this] { return isShown(Tiny, "retryButton"); }));
}

class ModelsPageKeyboard : public ModelsPageTest {
protected:
    QString focused() const { return window->activeFocusItem() ? window->activeFocusItem()->objectName() : QString(); }
    bool isFocusIn(Place place) const
    {
        const QQuickItem *item = window->activeFocusItem();
        return item && (item == card(place) || card(place)->isAncestorOf(item));
    }
};

TEST_F(ModelsPageKeyboard, goesThroughTheButtonsFromTopToBottom)
{
    makeFile("ggml-large-v3.bin");
    showPage();
    setStatus(Medium, downloading(1, 2));
    setStatus(Base, ModelStatus::Failed{"Error"}, true);
    QStringList stops;
    for (int step = 0; step < 8; ++step) {
        press(Qt::Key_Tab);
        stops << focused();
    }
    EXPECT_THAT(stops, ElementsAre("downloadButton", "revealButton", "deleteButton", "deleteButton", "retryButton",
                                   "downloadButton", "downloadButton", "downloadButton"));
    EXPECT_TRUE(isFocusIn(LargeTurbo)) << "and round again";
}

TEST_F(ModelsPageKeyboard, bringsWhatHasTheFocusIntoSight)
{
    showPage(460, 300);
    for (const Place place : {Tiny, Large, Small, LargeTurbo}) {
        tabTo(part(place, "downloadButton"));
        EXPECT_GE(area(place, "downloadButton").top(), 0);
        EXPECT_LE(area(place, "downloadButton").bottom(), 300);
    }
}

TEST_F(ModelsPageKeyboard, staysWithTheModelWhoseButtonGoesAway)
{
    makeFile("ggml-base.bin");
    blockDownload("ggml-base.bin");
    showPage();
    tabTo(part(Base, "deleteButton"));
    press(Qt::Key_Space);
    EXPECT_EQ(text(Base, "status"), "Not downloaded");
    EXPECT_TRUE(part(Base, "downloadButton")->hasActiveFocus());
    EXPECT_TRUE(part(Base, "downloadButton")->property("visualFocus").toBool());

    press(Qt::Key_Return);
    EXPECT_TRUE(card(Base)->hasActiveFocus());
    EXPECT_EQ(pixel(card(Base), 100, -2), color("focus")) << "the ring is round the card now";
    ASSERT_TRUE(waitUntil([this] { return isShown(Base, "retryButton"); }));
    press(Qt::Key_Tab);
    EXPECT_TRUE(part(Base, "retryButton")->hasActiveFocus()) << focused().toStdString();
    press(Qt::Key_Tab);
    EXPECT_TRUE(isFocusIn(Small));
}

TEST_F(ModelsPageKeyboard, showsNoRingToTheMouse)
{
    blockDownload("ggml-large-v3-turbo.bin");
    showPage();
    click(part(LargeTurbo, "downloadButton"));
    EXPECT_TRUE(card(LargeTurbo)->hasActiveFocus());
    EXPECT_EQ(pixel(card(LargeTurbo), 100, -2), color("windowColor"));
    ASSERT_TRUE(waitUntil([this] { return isShown(LargeTurbo, "retryButton"); }));
}

} // namespace

} // namespace sorvanta
