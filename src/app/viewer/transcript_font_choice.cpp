#include "app/viewer/transcript_font_choice.h"

namespace sorvanta {

QString rawValue(TranscriptFontChoice choice)
{
    switch (choice) {
    case TranscriptFontChoice::monospaced:
        return QStringLiteral("monospaced");
    case TranscriptFontChoice::sans:
        return QStringLiteral("sans");
    case TranscriptFontChoice::rounded:
        return QStringLiteral("rounded");
    case TranscriptFontChoice::serif:
        return QStringLiteral("serif");
    }
    return {};
}

QString label(TranscriptFontChoice choice)
{
    switch (choice) {
    case TranscriptFontChoice::monospaced:
        return QStringLiteral("Monospaced");
    case TranscriptFontChoice::sans:
        return QStringLiteral("Sans");
    case TranscriptFontChoice::rounded:
        return QStringLiteral("Rounded");
    case TranscriptFontChoice::serif:
        return QStringLiteral("Serif");
    }
    return {};
}

} // namespace sorvanta
