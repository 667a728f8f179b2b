#pragma once

#include <QString>
#include <QStringView>

#include <span>

namespace sorvanta {

/// One row of a language picker.
struct LanguageOption {
    const char *code; ///< what the engine is handed, for example "de"
    const char *name; ///< the English name, for example "German"
};

/// The rows of every language picker, in their order. The first, "auto", is the default.
std::span<const LanguageOption> languageOptions();

/// The code handed to the engine: `language` trimmed and in lower case, "auto" if nothing is left.
QString effectiveLanguage(QStringView language);

} // namespace sorvanta
