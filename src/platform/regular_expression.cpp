#include "platform/regular_expression.h"

#include <unicode/uregex.h>

#include <limits>

namespace sorvanta {

struct RegularExpression::Matcher {
    explicit Matcher(QStringView pattern)
    {
        UErrorCode status = U_ZERO_ERROR;
        expression = uregex_open(reinterpret_cast<const UChar *>(pattern.utf16()), static_cast<int32_t>(pattern.size()),
                                 0, nullptr, &status);
    }
    ~Matcher() { uregex_close(expression); }

    URegularExpression *expression = nullptr;
};

RegularExpression::RegularExpression(QStringView pattern)
    : m_matcher(std::make_unique<Matcher>(pattern))
{
}

RegularExpression::~RegularExpression() = default;

std::optional<RegularExpression::Match> RegularExpression::firstMatch(QStringView text, qsizetype from)
{
    URegularExpression *expression = m_matcher->expression;
    if (!expression || from > text.size() || text.size() > std::numeric_limits<int32_t>::max())
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    static constexpr char16_t emptyText[] = u"";
    const char16_t *units = text.isEmpty() ? emptyText : text.utf16();
    uregex_setText(expression, reinterpret_cast<const UChar *>(units), static_cast<int32_t>(text.size()), &status);
    if (!uregex_find(expression, static_cast<int32_t>(from), &status) || U_FAILURE(status))
        return std::nullopt;

    Match match;
    match.m_start = uregex_start(expression, 0, &status);
    const int count = uregex_groupCount(expression, &status) + 1;
    for (int i = 0; i < count; ++i) {
        const int32_t start = uregex_start(expression, i, &status);
        const int32_t end = uregex_end(expression, i, &status);
        if (start >= 0)
            match.m_groups.at(static_cast<std::size_t>(i)) = text.sliced(start, end - start);
    }
    if (U_FAILURE(status))
        return std::nullopt;
    return match;
}

} // namespace sorvanta
