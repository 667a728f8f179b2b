#include "platform/lower_case_form.h"

#include "platform/byte_search.h"
#include "platform/text_search.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace sorvanta {

namespace {

constexpr char16_t firstBeyondAscii = 0x80;

bool isAscii(QStringView text)
{
    return std::all_of(text.utf16(), text.utf16() + text.size(), [](char16_t unit) { return unit < firstBeyondAscii; });
}

QByteArray lowerCaseAscii(QStringView text)
{
    QByteArray form(text.size(), Qt::Uninitialized);
    std::transform(text.utf16(), text.utf16() + text.size(), form.data(), [](char16_t unit) {
        const bool isCapital = unit >= u'A' && unit <= u'Z';
        return static_cast<char>(isCapital ? unit + (u'a' - u'A') : unit);
    });
    return form;
}

QString lowerCaseText(QStringView text)
{
    return text.toString().toLower().normalized(QString::NormalizationForm_C);
}

} // namespace

QByteArray lowerCaseForm(QStringView text)
{
    if (isAscii(text))
        return lowerCaseAscii(text);
    QByteArray form = lowerCaseText(text).toUtf8();
    form.squeeze(); // it was made with room for the worst
    return form;
}

LowerCaseSearch::LowerCaseSearch(QStringView needle)
    : m_form(lowerCaseForm(needle))
    , m_text(lowerCaseText(needle))
{
}

LowerCaseSearch::Found LowerCaseSearch::find(QByteArrayView text) const
{
    if (m_form.isEmpty())
        return Found::Whole;
    Found found = Found::Nowhere;
    for (qsizetype at = indexOfBytes(text, m_form, 0); at >= 0; at = indexOfBytes(text, m_form, at + 1)) {
        if (!isCutOff(text.sliced(at + m_form.size())))
            return Found::Whole;
        found = Found::CutOff;
    }
    return found;
}

/// Whether the last character of the needle goes on in `rest`.
bool LowerCaseSearch::isCutOff(QByteArrayView rest) const
{
    if (rest.isEmpty() || static_cast<unsigned char>(rest.front()) < firstBeyondAscii)
        return false;
    UChar32 next = U_SENTINEL;
    int32_t position = 0;
    U8_NEXT(rest.data(), position, static_cast<int32_t>(std::min<qsizetype>(rest.size(), U8_MAX_LENGTH)), next);
    if (next < 0) // the border between two texts
        return false;
    QString context = m_text;
    context.append(QStringView(QChar::fromUcs4(static_cast<char32_t>(next))));
    return extendsGroup(next) || isHeldTogetherAt(context, m_text.size());
}

} // namespace sorvanta
