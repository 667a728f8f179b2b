#pragma once

#include <QByteArray>
#include <QString>

namespace sorvanta {

/// The text as a PDF with pages of 612 by 792 points (US Letter), as many as it takes. Fonts are those of the system
/// for each script, embedded; what is copied from the file is the text again, also where a font joins letters or where
/// a picture stands for an emoji. The same text gives the same bytes. Main thread only.
QByteArray renderPdf(const QString &text);

} // namespace sorvanta
