#include "platform/json_writer.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace sorvanta {

namespace {

/// What stands behind the backslash for an ASCII character; 0 for one that stands for itself, 'u' for one that is
/// written by its number.
constexpr std::array<char, 128> escapeLetters = [] {
    std::array<char, 128> letters{};
    for (std::size_t i = 0; i < 0x20; ++i)
        letters[i] = 'u';
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\n'] = 'n';
    letters['\r'] = 'r';
    letters['\t'] = 't';
    letters['"'] = '"';
    letters['\\'] = '\\';
    letters['/'] = '/';
    return letters;
}();

constexpr char hexDigits[] = "0123456789abcdef";

/// No UTF-16 unit grows beyond this: \u00xx.
constexpr qsizetype longestUnit = 6;
/// Units for which room is made at once, so that a text does not need the room of its worst case.
constexpr qsizetype unitsAtOnce = 4096;

inline char *writeEscaped(char *out, char16_t unit)
{
    const char letter = escapeLetters[unit];
    *out++ = '\\';
    *out++ = letter;
    if (letter == 'u') {
        *out++ = '0';
        *out++ = '0';
        *out++ = hexDigits[unit >> 4];
        *out++ = hexDigits[unit & 0xF];
    }
    return out;
}

inline char *writeUtf8(char *out, char32_t character)
{
    const auto continuation = [character](int shift) {
        return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    };
    if (character < 0x800) {
        *out++ = static_cast<char>(0xC0 | (character >> 6));
    } else if (character < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (character >> 12));
        *out++ = continuation(6);
    } else {
        *out++ = static_cast<char>(0xF0 | (character >> 18));
        *out++ = continuation(12);
        *out++ = continuation(6);
    }
    *out++ = continuation(0);
    return out;
}

/// Units that are looked at in one go, as lanes of two numbers.
constexpr qsizetype blockSize = 8;

constexpr quint64 everyLane = 0x0001000100010001;

/// Sets the highest bit of each lane, all of which are below 0x80, whose unit has to be escaped.
inline quint64 specialLanes(quint64 lanes, char16_t escapedSlash)
{
    // A lane turns negative only if it is smaller than what is taken from it.
    return (lanes - everyLane * 0x20) | ((lanes ^ (everyLane * '"')) - everyLane)
           | ((lanes ^ (everyLane * '\\')) - everyLane) | ((lanes ^ (everyLane * escapedSlash)) - everyLane);
}

/// The low bytes of four lanes, side by side.
inline quint32 narrowed(quint64 lanes)
{
    lanes = (lanes | (lanes >> 8)) & 0x0000FFFF0000FFFF;
    return static_cast<quint32>(lanes | (lanes >> 16));
}

/// Writes a block of units if each of them is ASCII and stands for itself. @return false if it is not so
inline bool writePlainBlock(char *out, const char16_t *units, char16_t escapedSlash)
{
    std::array<quint64, 2> lanes;
    std::memcpy(lanes.data(), units, sizeof lanes);
    if (((lanes[0] | lanes[1]) & (everyLane * 0xFF80)) != 0)
        return false;
    if (((specialLanes(lanes[0], escapedSlash) | specialLanes(lanes[1], escapedSlash)) & (everyLane * 0x8000)) != 0)
        return false;
    const std::array<quint32, 2> bytes{narrowed(lanes[0]), narrowed(lanes[1])};
    std::memcpy(out, bytes.data(), sizeof bytes);
    return true;
}

/// Writes the character that begins at `i` and moves `i` behind it.
inline char *writeCharacter(char *out, QStringView text, qsizetype &i, char16_t escapedSlash)
{
    const char16_t unit = text.utf16()[i++];
    if (unit < 0x80) {
        if (escapeLetters[unit] != 0 && (unit != '/' || escapedSlash == '/'))
            return writeEscaped(out, unit);
        *out = static_cast<char>(unit);
        return out + 1;
    }
    if (!QChar::isSurrogate(unit))
        return writeUtf8(out, unit);
    if (QChar::isHighSurrogate(unit) && i < text.size() && text[i].isLowSurrogate())
        return writeUtf8(out, QChar::surrogateToUcs4(unit, text[i++].unicode()));
    return writeUtf8(out, QChar::ReplacementCharacter);
}

} // namespace

JsonWriter::JsonWriter(Layout layout, Slashes slashes)
    : m_isPretty(layout == Layout::Pretty)
    , m_escapesSlashes(slashes == Slashes::Escaped)
{
}

void JsonWriter::key(QStringView name)
{
    beginValue();
    appendQuoted(name);
    append(m_isPretty ? " : " : ":");
    m_followsKey = true;
}

void JsonWriter::string(QStringView text)
{
    beginValue();
    appendQuoted(text);
}

void JsonWriter::boolean(bool value)
{
    beginValue();
    append(value ? "true" : "false");
}

QByteArray JsonWriter::takeBytes()
{
    m_bytes.truncate(std::exchange(m_size, 0));
    return std::exchange(m_bytes, {});
}

void JsonWriter::begin(char bracket)
{
    beginValue();
    append(QByteArrayView(&bracket, 1));
    m_isEmpty.push_back(true);
}

void JsonWriter::end(char bracket)
{
    const bool wasEmpty = m_isEmpty.back();
    m_isEmpty.pop_back();
    if (m_isPretty) {
        // Between the brackets of an empty pair there is an empty line.
        if (wasEmpty)
            append("\n");
        newLine();
    }
    append(QByteArrayView(&bracket, 1));
}

/// Whatever separates a value, or the key of one, from what stands before it.
void JsonWriter::beginValue()
{
    if (m_followsKey || m_isEmpty.empty()) {
        m_followsKey = false;
        return;
    }
    if (!m_isEmpty.back())
        append(",");
    m_isEmpty.back() = false;
    if (m_isPretty)
        newLine();
}

void JsonWriter::newLine()
{
    const auto indentation = 2 * static_cast<qsizetype>(m_isEmpty.size());
    char *out = room(1 + indentation);
    *out = '\n';
    std::fill_n(out + 1, indentation, ' ');
    m_size += 1 + indentation;
}

void JsonWriter::append(QByteArrayView bytes)
{
    std::memcpy(room(bytes.size()), bytes.data(), static_cast<size_t>(bytes.size()));
    m_size += bytes.size();
}

void JsonWriter::appendQuoted(QStringView text)
{
    append("\"");
    // Without slashes to escape, one of the others is looked for twice.
    const char16_t escapedSlash = m_escapesSlashes ? u'/' : u'"';
    qsizetype i = 0;
    while (i < text.size()) {
        char *out = room(longestUnit * unitsAtOnce);
        const qsizetype end = std::min(text.size(), i + unitsAtOnce);
        while (i < end) {
            if (end - i >= blockSize && writePlainBlock(out, text.utf16() + i, escapedSlash)) {
                out += blockSize;
                i += blockSize;
                continue;
            }
            const qsizetype stop = std::min(end, i + blockSize);
            while (i < stop)
                out = writeCharacter(out, text, i, escapedSlash);
        }
        m_size = out - m_bytes.constData();
    }
    append("\"");
}

char *JsonWriter::room(qsizetype bytes)
{
    if (m_bytes.size() - m_size < bytes)
        m_bytes.resize(std::max(m_size + bytes, m_bytes.size() + m_bytes.size() / 2));
    return m_bytes.data() + m_size;
}

} // namespace sorvanta
