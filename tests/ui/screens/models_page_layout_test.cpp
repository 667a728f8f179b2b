#include "models_page_test.h"
#include "shown_texts.h"

namespace sorvanta {

namespace {

struct Size {
    int width;
    int height;
};

class ModelsPageLayout : public ModelsPageTest, public testing::WithParamInterface<Size> {
protected:
    void show() { showPage(GetParam().width - 260, GetParam().height); }

    /// All of the page, seen or scrolled away.
    void expectThatNothingOverlaps()
    {
        settle();
        const double gutter = 24;
        const QRectF all(-1e6, -1e6, 2e6, 2e6);
        const auto texts = shownTexts(root->property("contentItem").value<QQuickItem *>(), all);
        EXPECT_GT(texts.size(), 20);
        expectTextsApart(texts, gutter, root->width() - gutter);
        for (const Place place : {LargeTurbo, Large, Medium, Base, Small, Tiny}) {
            for (const char *button : {"downloadButton", "revealButton", "deleteButton", "retryButton"}) {
                if (isShown(place, button)) {
                    EXPECT_LE(area(place, button).right(), area(card(place)).right() - 16) << button;
                    EXPECT_LE(area(place, button).bottom(), area(card(place)).bottom() - 16) << button;
                }
            }
            if (place != LargeTurbo) {
                EXPECT_EQ(area(card(place)).top() - area(card(Place(place - 1))).bottom(), 12);
            }
        }
        EXPECT_EQ(root->property("contentHeight").toDouble(),
                  area(card(Tiny)).bottom() + root->property("contentY").toDouble() + 16)
            << "the page can be scrolled to its end";
    }
};

TEST_P(ModelsPageLayout, withoutAModel)
{
    show();
    expectThatNothingOverlaps();
}

TEST_P(ModelsPageLayout, inAllStatesAtOnce)
{
    show();
    setStatus(LargeTurbo, ModelStatus::Downloaded{"/x"}, true);
    setStatus(Large, downloading(1'330'000'000, 3'100'000'000, 252));
    setStatus(Medium, ModelStatus::Failed{"The network connection was lost."});
    setStatus(Base, ModelStatus::Failed{"The network connection was lost."}, true);
    setStatus(Small, downloading(10'000'000, -1));
    expectThatNothingOverlaps();
}

TEST_P(ModelsPageLayout, withAVeryLongFailure)
{
    show();
    setStatus(Medium, ModelStatus::Failed{QString("Could not remove file: it did not work out. ").repeated(60)}, true);
    setStatus(Base, ModelStatus::Failed{"Could not remove file: " + QString("/a/path/without/blanks").repeated(40)});
    expectThatNothingOverlaps();
}

TEST_P(ModelsPageLayout, withVeryLongNames)
{
    show();
    const ModelInfo talkative{.id = "large-v3",
                              .name = QString("A very long name of a model ").repeated(10),
                              .description = QString("Words and words. ").repeated(60),
                              .fileName = "ggml-" + QString("very-long-").repeated(40) + ".bin",
                              .downloadURL = {}};
    screen.rows()->replace(Large, modelRow(talkative, ModelStatus::Downloaded{"/x"}, true, "large-v3"));
    screen.rows()->replace(Base, modelRow(talkative, ModelStatus::NotDownloaded{}, false, {}));
    expectThatNothingOverlaps();
    EXPECT_TRUE(isShown(Large, "recommendedBadge"));
    EXPECT_TRUE(isShown(Large, "nonEnglishBadge"));
}

INSTANTIATE_TEST_SUITE_P(, ModelsPageLayout, testing::Values(Size{1200, 700}, Size{720, 480}, Size{1920, 1080}));

using ModelsPagePlaces = ModelsPageTest;

TEST_F(ModelsPagePlaces, areThoseOfTheDrawing)
{
    showPage(); // 260 to the right of where the window draws it
    setStatus(LargeTurbo, ModelStatus::Downloaded{"/x"}, true);
    setStatus(Large, downloading(1'330'000'000, 3'100'000'000, 252));
    setStatus(Medium, ModelStatus::Failed{"The network connection was lost."}, true);
    settle();
    EXPECT_EQ(area(card(LargeTurbo)), QRectF(62, 96, 816, 190));
    EXPECT_EQ(area(LargeTurbo, "name").topLeft(), QPointF(78, 112));
    EXPECT_EQ(area(LargeTurbo, "recommendedBadge").topLeft(), area(LargeTurbo, "name").topRight() + QPointF(12, 0));
    EXPECT_EQ(area(LargeTurbo, "recommendedBadge").height(), 26);
    EXPECT_EQ(area(LargeTurbo, "description").topLeft(), QPointF(78, 146));
    EXPECT_EQ(area(LargeTurbo, "statusSymbol"), QRectF(78, 191, 16, 16));
    EXPECT_EQ(area(LargeTurbo, "status").topLeft(), QPointF(100, 190));
    EXPECT_EQ(area(LargeTurbo, "revealButton").topLeft(), QPointF(78, 216));
    EXPECT_EQ(area(LargeTurbo, "deleteButton").left(), area(LargeTurbo, "revealButton").right() + 8);
    EXPECT_EQ(area(LargeTurbo, "deleteButton").top(), 216);
    EXPECT_EQ(area(LargeTurbo, "savedAs").topLeft(), QPointF(78, 254));

    EXPECT_EQ(area(card(Large)).top(), 298);
    EXPECT_EQ(area(Large, "progressBar").width(), 784);
    EXPECT_EQ(area(Large, "progressBar").height(), 6);
    EXPECT_EQ(area(Large, "byteLine").top(), area(Large, "progressBar").bottom() + 6);

    EXPECT_EQ(area(Medium, "name").height(), 20) << "without a badge";
    EXPECT_EQ(area(Medium, "deleteButton").top(), area(Medium, "failure").bottom() + 6);
    EXPECT_EQ(area(Medium, "retryButton").top(), area(Medium, "deleteButton").bottom() + 6);
    EXPECT_EQ(area(Medium, "retryButton").left(), 78);
}

} // namespace

} // namespace sorvanta
