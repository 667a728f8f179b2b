#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace sorvanta {

/// The typefaces of the viewer's text, in the order of the picker.
enum class TranscriptFontChoice { monospaced, sans, rounded, serif };

inline constexpr std::array<TranscriptFontChoice, 4> transcriptFontChoices = {
    TranscriptFontChoice::monospaced, TranscriptFontChoice::sans, TranscriptFontChoice::rounded,
    TranscriptFontChoice::serif};

/// The value that stands for the choice: "monospaced", "sans", "rounded", "serif".
QString rawValue(TranscriptFontChoice choice);

/// The label of the choice in the picker.
QString label(TranscriptFontChoice choice);

} // namespace sorvanta
