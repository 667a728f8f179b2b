#pragma once

#include "core/text_lines.h"
#include "platform/unicode_text.h"

#include <QStringList>

/// The lines that a test hands over.
class StoredLines final : public sorvanta::TextLines {
public:
    /// The lines become those between the line breaks of `text`, blank ones included.
    void setText(const QString &text)
    {
        m_lines.clear();
        sorvanta::forEachLine(text, [this](QStringView line) { m_lines << line.toString(); });
    }

    /// The lines become these, whatever is in them.
    void setLines(const QStringList &lines) { m_lines = lines; }

    qsizetype lineCount() const override { return m_lines.size(); }
    QStringView line(qsizetype index) const override { return m_lines[index]; }

private:
    QStringList m_lines;
};
