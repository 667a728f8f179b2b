#include "platform/unicode_text.h"

#include <unicode/brkiter.h>
#include <unicode/ucnv.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>
#include <unicode/utext.h>

#include <limits>
#include <utility>

namespace sorvanta {

namespace {

template<typename Predicate>
QStringView trimmed(QStringView text, Predicate isTrimmed)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && isTrimmed(text[start].unicode()))
        ++start;
    while (end > start && isTrimmed(text[end - 1].unicode()))
        --end;
    return text.sliced(start, end - start);
}

/// Below this no character joins another one, apart from CR LF.
constexpr char16_t firstJoiningCharacter = 0x0300;

/// As many bytes the library takes at a time.
constexpr qsizetype longestDecoded = std::numeric_limits<int32_t>::max();

} // namespace

QStringView trimmedOfWhitespace(QStringView text)
{
    return trimmed(text, isWhitespace);
}

QStringView trimmedOfWhitespaceAndNewlines(QStringView text)
{
    return trimmed(text, isWhitespaceOrNewline);
}

struct GraphemeClusters::Iterator {
    explicit Iterator(QStringView text)
        : boundaries(std::move(spare))
    {
        UErrorCode status = U_ZERO_ERROR;
        if (!boundaries)
            boundaries.reset(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        utext_openUChars(&source, reinterpret_cast<const UChar *>(text.utf16()), text.size(), &status);
        if (boundaries)
            boundaries->setText(&source, status);
    }
    ~Iterator()
    {
        spare = std::move(boundaries);
        utext_close(&source);
    }
    Iterator(const Iterator &) = delete;
    Iterator &operator=(const Iterator &) = delete;

    // Making one costs more than walking over a line. A spare one does not look at its text before it gets another.
    static thread_local std::unique_ptr<icu::BreakIterator> spare;
    UText source = UTEXT_INITIALIZER;
    std::unique_ptr<icu::BreakIterator> boundaries;
};

thread_local std::unique_ptr<icu::BreakIterator> GraphemeClusters::Iterator::spare;

GraphemeClusters::GraphemeClusters(QStringView text)
    : m_text(text)
{
}

GraphemeClusters::~GraphemeClusters() = default;

qsizetype GraphemeClusters::end(qsizetype start)
{
    const char16_t first = m_text[start].unicode();
    if (start + 1 == m_text.size())
        return start + 1;
    const char16_t second = m_text[start + 1].unicode();
    if (first < firstJoiningCharacter && second < firstJoiningCharacter)
        return first == u'\r' && second == u'\n' ? start + 2 : start + 1;
    if (!m_iterator)
        m_iterator = std::make_unique<Iterator>(m_text);
    if (!m_iterator->boundaries || m_text.size() > std::numeric_limits<int32_t>::max())
        return start + (m_text[start].isHighSurrogate() && m_text[start + 1].isLowSurrogate() ? 2 : 1);
    const int32_t end = m_iterator->boundaries->following(static_cast<int32_t>(start));
    return end == icu::BreakIterator::DONE ? m_text.size() : end;
}

std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    if (bytes.size() > longestDecoded)
        return std::nullopt;
    // UTF-16 never has more units than UTF-8 has bytes.
    QString text(bytes.size(), Qt::Uninitialized);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(reinterpret_cast<UChar *>(text.data()), static_cast<int32_t>(text.size()), &length, bytes.data(),
                  static_cast<int32_t>(bytes.size()), &status);
    if (U_FAILURE(status))
        return std::nullopt;
    text.resize(length);
    return text;
}

QString decodeUtf8WithRepair(QByteArrayView bytes)
{
    if (bytes.size() > longestDecoded)
        return {};
    QString text(bytes.size(), Qt::Uninitialized);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar *>(text.data()), static_cast<int32_t>(text.size()), &length,
                         bytes.data(), static_cast<int32_t>(bytes.size()), 0xFFFD, nullptr, &status);
    text.resize(U_FAILURE(status) ? 0 : length);
    return text;
}

QString decodeText(QByteArrayView bytes)
{
    if (bytes.size() > longestDecoded)
        return {};
    if (auto text = decodeUtf8(bytes)) {
        if (text->startsWith(QChar::ByteOrderMark))
            text->remove(0, 1);
        return *std::move(text);
    }
    int32_t markSize = 0;
    UErrorCode status = U_ZERO_ERROR;
    const char *encoding =
        ucnv_detectUnicodeSignature(bytes.data(), static_cast<int32_t>(bytes.size()), &markSize, &status);
    const QByteArrayView rest = bytes.sliced(markSize);
    const icu::UnicodeString text(rest.data(), static_cast<int32_t>(rest.size()), encoding ? encoding : "windows-1252");
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

void repairSurrogates(QString &text)
{
    if (text.isValidUtf16())
        return;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
}

} // namespace sorvanta
