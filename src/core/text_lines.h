#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

namespace sorvanta {

/// The lines of a shown text, read without being copied.
class TextLines {
public:
    TextLines() = default;
    virtual ~TextLines() = default;
    TextLines(const TextLines &) = delete;
    TextLines &operator=(const TextLines &) = delete;

    virtual qsizetype lineCount() const = 0;

    /// A view that holds until the text changes. `index` is 0 to lineCount() - 1.
    virtual QStringView line(qsizetype index) const = 0;
};

/// Lines of a text that is handed over as a whole. Copying no character, it shares the text it was given.
class StoredLines final : public TextLines {
public:
    /// The lines become those between the line breaks of `text`, blank ones included.
    void setText(const QString &text);

    /// The lines become these, whatever is in them.
    void setLines(const QStringList &lines);

    qsizetype lineCount() const override { return static_cast<qsizetype>(m_lines.size()); }
    QStringView line(qsizetype index) const override { return m_lines[static_cast<std::size_t>(index)]; }

private:
    QStringList m_texts; // what the lines are views of
    std::vector<QStringView> m_lines;
};

} // namespace sorvanta
