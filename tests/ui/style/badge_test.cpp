#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QFont>
#include <algorithm>
#include <cmath>

namespace sorvanta {

namespace {

/// How far apart two colours are, in the channel that differs most.
int distance(const QColor &one, const QColor &other)
{
    return std::max({std::abs(one.red() - other.red()), std::abs(one.green() - other.green()),
                     std::abs(one.blue() - other.blue())});
}

class BadgeOfAModel : public UiTest {
protected:
    QQuickItem *showBadge(const QByteArray &properties)
    {
        show("import QtQuick\nimport Sorvanta.Style\n"
             "Item { width: 300; height: 100\n"
             "    Badge { objectName: 'it'; x: 20; y: 20; text: 'Recommended'; "
             + properties + " } }");
        return item("it");
    }
    /// The colour at one end of the capsule, inside of its rounding and outside of the word.
    QColor end(const QQuickItem *badge, bool isTrailing) const
    {
        return pixel(badge, isTrailing ? static_cast<int>(badge->width()) - 6 : 5, 13);
    }
};

TEST_F(BadgeOfAModel, isABoldWhiteWordWithRoomAroundIt)
{
    const QQuickItem *const badge = showBadge("");
    const QQuickItem *const word = badge->childItems().last();
    EXPECT_EQ(word->property("font").value<QFont>().weight(), QFont::Bold);
    EXPECT_EQ(word->property("color").value<QColor>(), QColor(Qt::white));
    EXPECT_NEAR(word->x(), 12, 1);
    EXPECT_NEAR(badge->width() - word->width(), 24, 1);
}

TEST_F(BadgeOfAModel, goesFromTheAccentColourToItAtFourFifths)
{
    const QQuickItem *const badge = showBadge("");
    const QColor accent("#085E78");
    const QColor paler((accent.red() * 4 + 255) / 5, (accent.green() * 4 + 255) / 5, (accent.blue() * 4 + 255) / 5);
    EXPECT_LE(distance(end(badge, false), accent), 6);
    EXPECT_LE(distance(end(badge, true), paler), 6);
}

TEST_F(BadgeOfAModel, goesFromIndigoToBlue)
{
    const QQuickItem *const badge = showBadge("indigo: true");
    EXPECT_LE(distance(end(badge, false), QColor("#4A4DB8")), 6);
    EXPECT_LE(distance(end(badge, true), QColor("#1F5FBF")), 6);
}

TEST_F(BadgeOfAModel, hasASoftShadowBelow)
{
    const QQuickItem *const badge = showBadge("");
    const int middle = static_cast<int>(badge->width() / 2);
    const QColor ground = pixel(badge, middle, 40);
    const int near = pixel(badge, middle, 26).lightness();
    const int far = pixel(badge, middle, 27).lightness();
    EXPECT_LT(near, far);
    EXPECT_LT(far, ground.lightness());
    EXPECT_EQ(pixel(badge, middle, 29), ground);
}

} // namespace

} // namespace sorvanta
