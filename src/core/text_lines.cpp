#include "core/text_lines.h"

#include "platform/unicode_text.h"

namespace sorvanta {

void StoredLines::setText(const QString &text)
{
    m_texts = {text};
    m_lines.clear();
    forEachLine(m_texts.constFirst(), [this](QStringView line) { m_lines.push_back(line); });
    m_lines.shrink_to_fit();
}

void StoredLines::setLines(const QStringList &lines)
{
    m_texts = lines;
    m_lines.assign(m_texts.cbegin(), m_texts.cend());
}

} // namespace sorvanta
