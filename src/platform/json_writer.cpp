#include "platform/json_writer.h"

#include <QChar>

#include <algorithm>
#include <array>
#include <cstring>

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

char *writeEscaped(char *out, char16_t unit)
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

char *writeUtf8(char *out, char32_t character)
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

} // namespace

JsonWriter::JsonWriter(Layout layout, Slashes slashes)
    : m_isPretty(layout == Layout::Pretty)
    , m_plainSlash(slashes == Slashes::Plain ? '/' : '\0')
{
}

void JsonWriter::reserve(qsizetype bytes)
{
    room(bytes);
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
    m_bytes.truncate(m_size);
    return std::move(m_bytes);
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
    const auto indentation = static_cast<qsizetype>(2 * m_isEmpty.size());
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
    qsizetype i = 0;
    while (i < text.size()) {
        char *out = room(longestUnit * unitsAtOnce);
        const qsizetype end = std::min(text.size(), i + unitsAtOnce);
        for (; i < end; ++i) {
            const char16_t unit = text[i].unicode();
            if (unit < 0x80) {
                if (escapeLetters[unit] == 0 || unit == static_cast<unsigned char>(m_plainSlash)) [[likely]]
                    *out++ = static_cast<char>(unit);
                else
                    out = writeEscaped(out, unit);
            } else if (!QChar::isSurrogate(unit)) {
                out = writeUtf8(out, unit);
            } else if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
                out = writeUtf8(out, QChar::surrogateToUcs4(unit, text[++i].unicode()));
            } else {
                out = writeUtf8(out, QChar::ReplacementCharacter);
            }
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
