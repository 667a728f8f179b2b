#pragma once

#include <QStringView>

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

} // namespace sorvanta
