#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sorvanta {

/// Text out of UTF-8 bytes that arrive in chunks, cut anywhere. The work for a chunk depends on the chunk.
class Utf8Stream {
public:
    /// Takes the next chunk. If the chunk alone and all bytes so far are well-formed UTF-8, returns the text that is
    /// new since the last time something was returned; otherwise none, and the bytes wait.
    std::optional<QString> append(const QByteArray &chunk);

    /// All text so far, each invalid sequence replaced with one U+FFFD.
    QString repairedText() const { return m_text + decodeRest(); }

private:
    QString decodeRest() const;

    QString m_text; // what was returned
    QByteArray m_rest; // what was not
    bool m_isBroken = false; // m_rest will never be well-formed
};

} // namespace sorvanta
