#include "platform/json_reader.h"

#include "platform/file_errors.h"
#include "platform/json_encoding.h"
#include "platform/unicode_text.h"

#include <cctype>
#include <cstring>

namespace sorvanta {

namespace {

constexpr int deepestNesting = 512;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Whether one of eight bytes ends a run of plain characters: a quote, a backslash or a control character.
bool hasSpecialByte(quint64 bytes)
{
    constexpr quint64 ones = 0x0101010101010101;
    constexpr quint64 highBits = 0x80 * ones;
    const auto hasByteBelow = [](quint64 value, quint64 limit) { return (value - limit * ones) & ~value & highBits; };
    return hasByteBelow(bytes, 0x20) != 0 || hasByteBelow(bytes ^ ('"' * ones), 1) != 0
           || hasByteBelow(bytes ^ ('\\' * ones), 1) != 0;
}

bool isSpecial(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

char16_t unescaped(char16_t letter)
{
    switch (letter) {
    case 'b':
        return u'\b';
    case 'f':
        return u'\f';
    case 'n':
        return u'\n';
    case 'r':
        return u'\r';
    case 't':
        return u'\t';
    default:
        return letter;
    }
}

/// Replaces the escapes of a text by what they mean, in place. @return false if a surrogate has no other half
bool unescape(QString &text)
{
    QChar *const begin = text.data();
    const QStringView source(text);
    qsizetype in = 0;
    qsizetype out = 0;
    while (in < source.size()) {
        qsizetype escape = source.indexOf(u'\\', in);
        if (escape < 0)
            escape = source.size();
        std::memmove(begin + out, begin + in, static_cast<size_t>(escape - in) * sizeof(QChar));
        out += escape - in;
        in = escape;
        if (in == source.size())
            break;
        if (source[in + 1] != u'u') {
            begin[out++] = QChar(unescaped(source[in + 1].unicode()));
            in += 2;
            continue;
        }
        const QChar unit(source.sliced(in + 2, 4).toUShort(nullptr, 16));
        in += 6;
        if (unit.isLowSurrogate() && !(out > 0 && begin[out - 1].isHighSurrogate()))
            return false;
        begin[out++] = unit;
        if (unit.isHighSurrogate() && !source.sliced(in).startsWith(u"\\u"))
            return false;
    }
    text.truncate(out);
    return text.isValidUtf16();
}

} // namespace

JsonReader::JsonReader(const QByteArray &document)
    : m_document(utf8JsonDocument(document))
    , m_position(m_document.constData())
    , m_end(m_position + m_document.size())
{
}

JsonReader::Kind JsonReader::nextKind()
{
    switch (peek()) {
    case '{':
        return Kind::Object;
    case '[':
        return Kind::Array;
    case '"':
        return Kind::String;
    case 't':
    case 'f':
        return Kind::Boolean;
    case 'n':
        return Kind::Null;
    default:
        return Kind::Number;
    }
}

std::optional<QString> JsonReader::readString()
{
    return decoded(readRawString());
}

bool JsonReader::readBoolean()
{
    const bool value = peek() == 't';
    skipWord(value ? "true" : "false");
    return value;
}

void JsonReader::skipValue()
{
    switch (nextKind()) {
    case Kind::Object:
        return readObject([this](QByteArrayView) { skipValue(); });
    case Kind::Array:
        return readArray([this] { skipValue(); });
    case Kind::String:
        readRawString();
        return;
    case Kind::Number:
        return skipNumber();
    case Kind::Boolean:
        readBoolean();
        return;
    case Kind::Null:
        return skipWord("null");
    }
}

void JsonReader::readEnd()
{
    skipWhiteSpace();
    if (m_position != m_end)
        throw incorrectFormatError();
}

std::optional<QString> JsonReader::decoded(const RawString &raw)
{
    std::optional<QString> text = raw.isAscii ? QString::fromLatin1(raw.bytes) : decodeUtf8(raw.bytes);
    if (text && raw.hasEscapes && !unescape(*text))
        return std::nullopt;
    return text;
}

/// The first character of what comes next, a zero at the end of the document.
char JsonReader::peek()
{
    skipWhiteSpace();
    return *m_position;
}

void JsonReader::skipWhiteSpace()
{
    while (*m_position == ' ' || *m_position == '\n' || *m_position == '\r' || *m_position == '\t')
        ++m_position;
}

void JsonReader::begin(char bracket)
{
    if (peek() != bracket || ++m_depth > deepestNesting)
        throw incorrectFormatError();
    ++m_position;
}

bool JsonReader::ends(char bracket)
{
    return peek() == bracket;
}

void JsonReader::end()
{
    ++m_position;
    --m_depth;
}

/// Reads the comma behind a member or an element; before the closing bracket there need not be one.
void JsonReader::readSeparator(char bracket)
{
    if (ends(bracket))
        return;
    skipWord(",");
}

QByteArrayView JsonReader::readKey()
{
    if (peek() != '"')
        throw incorrectFormatError();
    const RawString raw = readRawString();
    if (peek() != ':')
        throw incorrectFormatError();
    ++m_position;
    if (!raw.hasEscapes)
        return raw.bytes;
    const std::optional<QString> key = decoded(raw);
    if (!key)
        return raw.bytes;
    m_key = key->toUtf8();
    return m_key;
}

JsonReader::RawString JsonReader::readRawString()
{
    if (peek() != '"')
        throw incorrectFormatError();
    const char *const begin = ++m_position;
    RawString raw;
    for (;;) {
        skipPlainCharacters(raw);
        if (*m_position == '"')
            break;
        if (*m_position != '\\')
            throw incorrectFormatError();
        raw.hasEscapes = true;
        skipEscape();
    }
    raw.bytes = QByteArrayView(begin, m_position);
    ++m_position;
    return raw;
}

void JsonReader::skipPlainCharacters(RawString &raw)
{
    quint64 allBytes = 0;
    quint64 bytes;
    while (m_end - m_position >= qsizetype(sizeof bytes)) {
        std::memcpy(&bytes, m_position, sizeof bytes);
        if (hasSpecialByte(bytes))
            break;
        allBytes |= bytes;
        m_position += sizeof bytes;
    }
    for (; !isSpecial(*m_position); ++m_position)
        allBytes |= static_cast<unsigned char>(*m_position);
    if ((allBytes & 0x8080808080808080) != 0)
        raw.isAscii = false;
}

void JsonReader::skipEscape()
{
    ++m_position;
    if (*m_position == '\0' || !std::strchr("\"\\/bfnrtu", *m_position))
        throw incorrectFormatError();
    if (*m_position++ != 'u')
        return;
    for (int i = 0; i < 4; ++i) {
        if (!std::isxdigit(static_cast<unsigned char>(*m_position)))
            throw incorrectFormatError();
        ++m_position;
    }
}

void JsonReader::skipDigits()
{
    if (!isDigit(*m_position))
        throw incorrectFormatError();
    while (isDigit(*m_position))
        ++m_position;
}

void JsonReader::skipNumber()
{
    if (peek() == '-')
        ++m_position;
    if (*m_position == '0')
        ++m_position;
    else
        skipDigits();
    if (*m_position == '.') {
        ++m_position;
        skipDigits();
    }
    if (*m_position == 'e' || *m_position == 'E') {
        ++m_position;
        if (*m_position == '+' || *m_position == '-')
            ++m_position;
        skipDigits();
    }
}

void JsonReader::skipWord(QByteArrayView word)
{
    skipWhiteSpace();
    if (!QByteArrayView(m_position, m_end).startsWith(word))
        throw incorrectFormatError();
    m_position += word.size();
}

} // namespace sorvanta
