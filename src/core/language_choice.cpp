#include "core/language_choice.h"

#include "core/languages.h"

#include <algorithm>

namespace sorvanta {

QStringList LanguageChoice::labels()
{
    QStringList labels;
    for (const LanguageOption &option : languageOptions())
        labels << QStringLiteral("%1 (%2)").arg(QLatin1String(option.name), QLatin1String(option.code));
    return labels;
}

int LanguageChoice::index() const
{
    const auto options = languageOptions();
    const auto chosen = std::find_if(options.begin(), options.end(), [this](const LanguageOption &option) {
        return language() == QLatin1String(option.code);
    });
    return chosen == options.end() ? -1 : static_cast<int>(chosen - options.begin());
}

void LanguageChoice::choose(int index)
{
    const auto options = languageOptions();
    if (index >= 0 && static_cast<std::size_t>(index) < options.size())
        setLanguage(QString::fromLatin1(options[static_cast<std::size_t>(index)].code));
}

} // namespace sorvanta
