#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sorvanta {

/// UTF-8 bytes that arrive in chunks, cut anywhere, and the text in them. The work for a chunk depends on the chunk.
class Utf8Stream {
public:
    /// Takes the next chunk. If the chunk alone and all bytes so far are well-formed UTF-8, returns the text that is
    /// new since the last time something was returned; otherwise none, and the bytes wait.
    std::optional<QString> append(const QByteArray &chunk);

    /// All text so far, each invalid sequence replaced with one U+FFFD.
    QString repairedText() const;

    /// The end of repairedText() that append() has not returned.
    QString repairedRest() const;

private:
    QByteArray m_bytes;
    qsizetype m_returned = 0; // of the bytes; ends with a whole character
    bool m_isBroken = false; // the bytes behind that will never be well-formed
};

} // namespace sorvanta
