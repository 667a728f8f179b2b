#include "app/style/symbols.h"

#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QFile>

namespace sorvanta {

namespace {

struct Drawn {
    const char *symbol;
    const char *drawing;
};

class Symbol : public testing::TestWithParam<Drawn> { };

TEST_P(Symbol, isDrawnAsTheTableSays)
{
    EXPECT_EQ(symbolFile(GetParam().symbol), QStringLiteral(":/sorvanta/icons/%1.svg").arg(GetParam().drawing));
    EXPECT_TRUE(QFile::exists(symbolFile(GetParam().symbol)));
}

const Drawn table[]{
    {"arrow.up.doc", "file-up"},
    {"mic", "mic"},
    {"waveform.badge.mic", "mic-audio-lines"},
    {"tray.full", "inbox"},
    {"clock", "clock"},
    {"network", "network"},
    {"questionmark.circle", "circle-question-mark"},
    {"shield.checkerboard", "shield-check"},
    {"chevron.up", "chevron-up"},
    {"chevron.down", "chevron-down"},
    {"arrow.up.left.and.arrow.down.right", "maximize-2"},
    {"doc.text", "file-text"},
    {"exclamationmark.triangle", "triangle-alert"},
    {"exclamationmark.triangle.fill", "triangle-alert"},
    {"record.circle.fill", "circle-dot-filled"},
    {"stop.circle.fill", "circle-stop-filled"},
    {"play.circle", "circle-play"},
    {"pause.circle", "circle-pause"},
    {"play.fill", "play-filled"},
    {"pause.fill", "pause-filled"},
    {"square.and.arrow.down", "download"},
    {"square.and.arrow.up", "share"},
    {"arrow.clockwise", "rotate-cw"},
    {"trash", "trash"},
    {"cpu", "cpu"},
    {"globe", "globe"},
    {"person.2.wave.2.fill", "users-round"},
    {"icloud.and.arrow.down", "cloud-download"},
    {"checkmark.circle.fill", "circle-check"},
    {"doc.on.doc", "copy"},
    {"xmark", "x"},
    {"doc.plaintext", "file-type"},
    {"captions.bubble", "captions"},
    {"text.badge.plus", "list-plus"},
    {"tablecells", "table"},
    {"doc.richtext", "file-pen-line"},
    {"doc.richtext.fill", "file-image"},
    {"doc.text.magnifyingglass", "file-search"},
    {"chevron.left.forwardslash.chevron.right", "code-xml"},
    {"curlybraces", "braces"},
    {"mark", "audio-lines"},
    {"search", "search"},
    {"check", "check"},
    {"picker", "chevrons-up-down"},
    {"submenu", "chevron-right"},
};

INSTANTIATE_TEST_SUITE_P(, Symbol, testing::ValuesIn(table));

TEST(Symbols, areThoseOfTheTableAndNoOthers)
{
    EXPECT_EQ(symbolNames().size(), qsizetype(std::size(table)));
    EXPECT_EQ(symbolFile("no.such.symbol"), "");
}

class IconItem : public UiTest {
protected:
    int painted(const QColor &wanted) const
    {
        int count = 0;
        const QImage image = grab();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == wanted;
        }
        return count;
    }
};

TEST_F(IconItem, isDrawnInItsColourAndFollowsIt)
{
    show("import Sorvanta.Style\nIcon { symbol: 'play.fill'; size: 48; color: '#C2352C' }");
    EXPECT_EQ(root->width(), 48);
    EXPECT_GT(painted(QColor("#C2352C")), 300);
    root->setProperty("color", QColor("#085E78"));
    EXPECT_EQ(painted(QColor("#C2352C")), 0);
    EXPECT_GT(painted(QColor("#085E78")), 300);
    root->setProperty("symbol", "");
    EXPECT_EQ(painted(QColor("#085E78")), 0);
}

TEST_F(IconItem, aFilledSymbolCoversMoreThanItsOutline)
{
    show("import Sorvanta.Style\nIcon { symbol: 'play.circle'; size: 48; color: '#085E78' }");
    const int outlined = painted(QColor("#085E78"));
    root->setProperty("symbol", "play.fill");
    EXPECT_GT(painted(QColor("#085E78")), outlined);
}

} // namespace

} // namespace sorvanta
