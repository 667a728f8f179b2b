#pragma once

#include <QString>
#include <QStringList>

namespace sorvanta {

/// The paragraphs that a document makes of a text, at least one. A paragraph ends at LF, CR, CR LF, U+0085 and U+2029.
/// Within a paragraph U+2028 breaks the line; VT and FF become one. Other control characters than the tab have no form
/// in a document and are left out; half a surrogate pair and the noncharacters become U+FFFD.
QStringList documentParagraphs(const QString &text);

} // namespace sorvanta
