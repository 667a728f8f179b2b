#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QFont>
#include <QTest>

#include <gmock/gmock.h>

namespace sorvanta {

namespace {

QVariantList sections()
{
    const QList<std::pair<QString, QString>> rows{{"arrow.up.doc", "Transcript Audio From File"},
                                                  {"mic", "Record Audio to Transcript"},
                                                  {"waveform.badge.mic", "Record Meeting (System Audio)"},
                                                  {"tray.full", "Batch Processing"},
                                                  {"clock", "History"},
                                                  {"network", "Models Settings"},
                                                  {"questionmark.circle", "Help"}};
    QVariantList list;
    for (const auto &[symbol, label] : rows)
        list << QVariantMap{{"symbol", symbol}, {"label", label}};
    return list;
}

class Sidebar : public UiTest {
protected:
    Sidebar()
    {
        show("import Sorvanta.App\n"
             "Sidebar { width: 260; height: 700; onChosen: row => currentIndex = row }",
             {{"sections", sections()}, {"currentIndex", 0}, {"versionText", "Version 1.0 (1)"}});
    }

    QAccessibleInterface *row(int index) const { return accessible(list())->child(index); }
    /// What the delegate of a row holds under that name.
    QQuickItem *part(int index, const char *name) const { return row(index)->object()->findChild<QQuickItem *>(name); }
    QQuickItem *list() const { return item("sections"); }
    int current() const { return root->property("currentIndex").toInt(); }
};

TEST_F(Sidebar, isAListOfSevenNamedRowsForAScreenReader)
{
    EXPECT_EQ(accessible(list())->role(), QAccessible::List);
    ASSERT_EQ(accessible(list())->childCount(), 7);
    for (int index = 0; index < 7; ++index) {
        EXPECT_EQ(row(index)->role(), QAccessible::ListItem);
        EXPECT_EQ(row(index)->text(QAccessible::Name), sections()[index].toMap()["label"].toString());
        EXPECT_EQ(row(index)->state().selected, index == 0);
    }
}

TEST_F(Sidebar, saysItsWordsInOrder)
{
    EXPECT_THAT(spokenWords(accessible(window.get())),
                testing::ElementsAre("Sorvanta", "Sections", "Transcript Audio From File", "Record Audio to Transcript",
                                     "Record Meeting (System Audio)", "Batch Processing", "History", "Models Settings",
                                     "Help", "Version 1.0 (1)"));
}

TEST_F(Sidebar, showsTheSymbolOfEachRowInAFrameOf20AndTheLabelBehindIt)
{
    for (int index = 0; index < 7; ++index) {
        const QVariantMap section = sections()[index].toMap();
        const QRectF frame = place(part(index, "sectionIcon")).adjusted(-1, 0, 1, 0);
        EXPECT_EQ(part(index, "sectionIcon")->property("symbol"), section["symbol"]);
        EXPECT_EQ(part(index, "sectionLabel")->property("text"), section["label"]);
        EXPECT_EQ(frame.width(), 20);
        EXPECT_EQ(frame.left(), place(part(0, "sectionIcon")).left() - 1) << "all in one column";
        EXPECT_GE(place(part(index, "sectionLabel")).left(), frame.right());
    }
}

TEST_F(Sidebar, isPressedByAScreenReader)
{
    pressAccessibly(row(4)->object());
    EXPECT_EQ(current(), 4);
    EXPECT_TRUE(row(4)->state().selected);
    EXPECT_FALSE(row(0)->state().selected);
}

TEST_F(Sidebar, isMovedByTheArrowKeysAndStaysAtItsEnds)
{
    tabTo(list());
    press(Qt::Key_Up);
    EXPECT_EQ(current(), 0);
    press(Qt::Key_Down);
    EXPECT_EQ(current(), 1);
    press(Qt::Key_End);
    EXPECT_EQ(current(), 6);
    press(Qt::Key_Down);
    EXPECT_EQ(current(), 6);
    press(Qt::Key_Up);
    EXPECT_EQ(current(), 5);
    press(Qt::Key_Home);
    EXPECT_EQ(current(), 0);
}

TEST_F(Sidebar, isClicked)
{
    click(qobject_cast<QQuickItem *>(row(3)->object()));
    EXPECT_EQ(current(), 3);
}

TEST_F(Sidebar, losesItsSelectionToAClickWithControl)
{
    auto *third = qobject_cast<QQuickItem *>(row(2)->object());
    click(third);
    ASSERT_EQ(current(), 2);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::ControlModifier, third->mapToScene({40, 18}).toPoint());
    EXPECT_EQ(current(), -1);
    EXPECT_FALSE(row(2)->state().selected);
    tabTo(list());
    press(Qt::Key_Down);
    EXPECT_EQ(current(), 0);
}

TEST_F(Sidebar, showsTheVersionSmallAndInASecondaryColourAtTheBottomLeft)
{
    const QQuickItem *version = item("version");
    EXPECT_EQ(version->property("text").toString(), "Version 1.0 (1)");
    EXPECT_EQ(place("version").bottom(), 700 - 12);
    EXPECT_EQ(place("version").left(), 4);
    EXPECT_EQ(version->property("effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);
    EXPECT_EQ(version->property("font").value<QFont>().pixelSize(), 11);
    EXPECT_EQ(version->property("color").value<QColor>(), color("text2"));
    for (const char *side : {"leftPadding", "rightPadding"})
        EXPECT_EQ(item("version")->property(side).toInt(), 12) << side;
    for (const char *side : {"topPadding", "bottomPadding"})
        EXPECT_EQ(item("version")->property(side).toInt(), 4) << side;
}

TEST_F(Sidebar, showsTheRingOnlyToTheKeyboard)
{
    const auto *first = qobject_cast<QQuickItem *>(row(0)->object());
    const auto outside = [&] { return pixel(first, 100, -2); };
    EXPECT_EQ(outside(), color("sidebar"));
    tabTo(list());
    EXPECT_EQ(outside(), color("focus"));
    click(qobject_cast<QQuickItem *>(row(0)->object()));
    EXPECT_EQ(outside(), color("sidebar"));
}

TEST_F(Sidebar, showsNoRingToTheMouseWhenTheWindowIsComeBackTo)
{
    auto *const first = qobject_cast<QQuickItem *>(row(0)->object());
    click(first);
    ASSERT_TRUE(list()->hasActiveFocus());
    leaveAndComeBack();
    EXPECT_TRUE(list()->hasActiveFocus());
    EXPECT_EQ(pixel(first, 100, -2), color("sidebar"));
}

TEST_F(Sidebar, looksAsDrawn)
{
    savePicture("02-sidebar");
    const auto *first = qobject_cast<QQuickItem *>(row(0)->object());
    EXPECT_EQ(first->height(), 36);
    EXPECT_EQ(first->mapToScene({0, 0}), QPointF(8, 60));
    EXPECT_EQ(pixel(first, 230, 18), QColor("#D2E3E9"));
    EXPECT_EQ(pixel(root, 100, 500), QColor("#EBEFF1"));
    EXPECT_EQ(pixel(root, 259, 500), QColor("#E3E8EA"));
    setDark(true);
    savePicture("02-sidebar-dark");
    EXPECT_EQ(pixel(first, 230, 18), QColor("#173640"));
    EXPECT_EQ(pixel(root, 100, 500), QColor("#101315"));
}

} // namespace

} // namespace sorvanta
