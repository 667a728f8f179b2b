#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <memory>
#include <optional>

namespace sorvanta {

/// Line breaks: U+000A to U+000D, U+0085, U+2028, U+2029. All of them are single UTF-16 units.
constexpr bool isNewline(char16_t unit)
{
    return (unit >= 0x000A && unit <= 0x000D) || unit == 0x0085 || unit == 0x2028 || unit == 0x2029;
}

/// Blanks within a line: TAB, the space separators and U+200B ZERO WIDTH SPACE. No line breaks.
constexpr bool isWhitespace(char16_t unit)
{
    return unit == 0x0009 || unit == 0x0020 || unit == 0x00A0 || unit == 0x1680 || (unit >= 0x2000 && unit <= 0x200B)
           || unit == 0x202F || unit == 0x205F || unit == 0x3000;
}

constexpr bool isWhitespaceOrNewline(char16_t unit)
{
    return isWhitespace(unit) || isNewline(unit);
}

/// The Unicode property White_Space, which a whole character has if its first code point has it. Unlike
/// isWhitespace() it holds the line breaks and does not hold U+200B.
constexpr bool hasWhiteSpaceProperty(char16_t unit)
{
    return isWhitespaceOrNewline(unit) && unit != 0x200B;
}

/// `text` without the white space (no line breaks) at both ends, code point by code point.
QStringView trimmedOfWhitespace(QStringView text);

/// `text` without the white space and line breaks at both ends.
QStringView trimmedOfWhitespaceAndNewlines(QStringView text);

/// Calls `visit(QStringView line)` for each piece of `text` between line breaks, empty pieces included: "a\r\nb" has
/// three and the empty text one.
template<typename Visitor>
void forEachLine(QStringView text, Visitor visit)
{
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isNewline(text[i].unicode())) {
            visit(text.sliced(start, i - start));
            start = i + 1;
        }
    }
    visit(text.sliced(start));
}

/// Walks over the user-perceived characters of a text, which must outlive it: extended grapheme clusters, CR LF being
/// one. In a text of 2^31 units or more it takes code points for clusters.
class GraphemeClusters {
public:
    explicit GraphemeClusters(QStringView text);
    ~GraphemeClusters();
    GraphemeClusters(const GraphemeClusters &) = delete;
    GraphemeClusters &operator=(const GraphemeClusters &) = delete;

    /// The end, in UTF-16 units, of the cluster that begins at `start`, which must lie before the end of the text.
    qsizetype end(qsizetype start);

    /// Whether a cluster ends at `position`, which must lie behind the beginning of the text.
    bool isBorder(qsizetype position) { return end(position - 1) == position; }

private:
    QStringView m_text;
    struct Iterator;
    std::unique_ptr<Iterator> m_iterator; // made when the first character comes that needs it
};

/// The text of well-formed UTF-8, or none if any byte is not, or of 2 GiB and more. A byte order mark is a character
/// like any other.
std::optional<QString> decodeUtf8(QByteArrayView bytes);

/// The text of any bytes. Each maximal piece that is not well-formed UTF-8 becomes one U+FFFD. 2 GiB and more give an
/// empty text.
QString decodeUtf8WithRepair(QByteArrayView bytes);

/// The text of a file whose encoding nobody knows: UTF-8 if it is well-formed, else what a byte order mark says (UTF-8,
/// UTF-16, UTF-32, with repair), else Windows-1252. The mark is left out. 2 GiB and more give an empty text.
QString decodeText(QByteArrayView bytes);

/// Puts U+FFFD in the place of each half of a surrogate pair that stands without the other one.
void repairSurrogates(QString &text);

} // namespace sorvanta
