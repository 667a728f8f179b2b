#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QFont>
#include <QFontInfo>

namespace sorvanta {

namespace {

struct Token {
    const char *name;
    const char *light;
    const char *dark;
    int percent = 100; ///< how opaque it is
};

void PrintTo(const Token &token, std::ostream *out)
{
    *out << token.name;
}

class ColorToken : public UiTest, public testing::WithParamInterface<Token> {
protected:
    static QString shown(const QColor &color, int percent)
    {
        return QStringLiteral("%1 at %2 %").arg(color.name(QColor::HexRgb).toUpper()).arg(percent);
    }
    QString shown() const
    {
        const QColor shownColor = color(GetParam().name);
        return shown(shownColor, qRound(shownColor.alphaF() * 100));
    }
};

TEST_P(ColorToken, hasItsColourInBothThemes)
{
    EXPECT_EQ(shown(), shown(QColor(GetParam().light), GetParam().percent));
    setDark(true);
    EXPECT_EQ(shown(), shown(QColor(GetParam().dark), GetParam().percent));
}

const Token tokens[]{
    {"windowColor", "#F5F7F8", "#15191B"},
    {"sidebar", "#EBEFF1", "#101315"},
    {"card", "#FFFFFF", "#1D2225"},
    {"popup", "#FFFFFF", "#252B2F"},
    {"well", "#F3F6F7", "#181C1F"},
    {"control", "#FFFFFF", "#2A3034"},
    {"hover", "#EFF3F4", "#272D31"},
    {"pressed", "#E4EAEC", "#30373B"},
    {"track", "#DCE3E6", "#363E43"},
    {"separator", "#E3E8EA", "#2B3236"},
    {"border", "#D6DDE0", "#363E43"},
    {"controlBorder", "#C3CDD1", "#465056"},
    {"controlMark", "#76838A", "#7F8C93"},
    {"dropDash", "#A9B6BC", "#465056"},
    {"text", "#182125", "#EDF1F2"},
    {"text2", "#4F5D64", "#AEB9BE"},
    {"text3", "#57646B", "#95A1A7"},
    {"textDisabled", "#98A4AA", "#657077"},
    {"accent", "#085E78", "#1A7A92"},
    {"accentHover", "#0A6B88", "#1C7F98"},
    {"accentPressed", "#064C62", "#166A80"},
    {"accentText", "#085E78", "#66C6DB"},
    {"accentSoft", "#D9EAEF", "#173640"},
    {"sidebarSelected", "#D2E3E9", "#173640"},
    {"progressFill", "#085E78", "#4FB4CC"},
    {"focus", "#0F7B9B", "#4FB4CC"},
    {"danger", "#B42A22", "#FF8B80"},
    {"dangerFill", "#C2352C", "#C63F35"},
    {"dangerFillHover", "#AE2D25", "#B7382F"},
    {"dangerFillPressed", "#97251E", "#A33027"},
    {"dangerSoft", "#FBEAE8", "#3A2120"},
    {"dangerBorder", "#E8BDB8", "#5E3330"},
    {"warning", "#8F4F00", "#F2B35B"},
    {"success", "#17693A", "#6BCB8F"},
    {"info", "#1F5FBF", "#82B1F5"},
    {"hit", "#FFCC00", "#FFD60A", 35},
    {"hitCurrent", "#FFCC00", "#FFD60A"},
    {"rowActive", "#085E78", "#66C6DB", 18},
    {"tagFill", "#4F5D64", "#AEB9BE", 12},
    {"levelTrack", "#4F5D64", "#AEB9BE", 15},
    {"level", "#2F9E5B", "#4CC985", 70},
    {"levelIdle", "#808080", "#808080", 30},
    {"scrollThumb", "#4F5D64", "#A9B8BF", 35},
    {"toolTip", "#263036", "#EDF1F2"},
    {"toolTipText", "#FFFFFF", "#182125"},
    {"hitText", "#182125", "#FFFFFF"},
    {"hitCurrentText", "#182125", "#182125"},
    {"accentOn", "#FFFFFF", "#FFFFFF"},
};

INSTANTIATE_TEST_SUITE_P(, ColorToken, testing::ValuesIn(tokens));

class Scrim : public UiTest { };

TEST_F(Scrim, isLighterInTheLightTheme)
{
    EXPECT_EQ(color("scrim").name(QColor::HexRgb), "#182125");
    EXPECT_EQ(qRound(color("scrim").alphaF() * 100), 36);
    setDark(true);
    EXPECT_EQ(color("scrim").name(QColor::HexRgb), "#000000");
    EXPECT_EQ(qRound(color("scrim").alphaF() * 100), 55);
}

struct TypeStyle {
    const char *type;
    int size;
    int line;
    QFont::Weight weight;
    const char *family;
};

void PrintTo(const TypeStyle &style, std::ostream *out)
{
    *out << style.type;
}

class TypeStyles : public UiTest, public testing::WithParamInterface<TypeStyle> { };

TEST_P(TypeStyles, haveTheirSizeLineAndWeight)
{
    const TypeStyle &style = GetParam();
    show(QByteArray("import Sorvanta.Style\n") + style.type + " { text: 'Text'; property string family: Theme."
         + style.family + " }");
    const QFont font = root->property("font").value<QFont>();
    EXPECT_EQ(font.pixelSize(), style.size);
    EXPECT_EQ(font.weight(), style.weight);
    EXPECT_EQ(QFontInfo(font).family(), root->property("family").toString());
    EXPECT_EQ(root->property("lineHeight").toInt(), style.line);
}

INSTANTIATE_TEST_SUITE_P(, TypeStyles,
                         testing::Values(TypeStyle{"LargeTitle", 28, 34, QFont::Bold, "displayFamily"},
                                         TypeStyle{"Title2", 22, 28, QFont::Bold, "displayFamily"},
                                         TypeStyle{"Title3", 18, 24, QFont::DemiBold, "displayFamily"},
                                         TypeStyle{"Headline", 14, 20, QFont::DemiBold, "textFamily"},
                                         TypeStyle{"BodyText", 13, 18, QFont::Normal, "textFamily"},
                                         TypeStyle{"LabelText", 13, 18, QFont::Medium, "textFamily"},
                                         TypeStyle{"SectionLabel", 12, 16, QFont::DemiBold, "textFamily"},
                                         TypeStyle{"FootnoteText", 12, 16, QFont::Normal, "textFamily"},
                                         TypeStyle{"CaptionText", 11, 14, QFont::Medium, "textFamily"}));

} // namespace

} // namespace sorvanta
