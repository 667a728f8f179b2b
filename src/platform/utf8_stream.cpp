#include "platform/utf8_stream.h"

#include "platform/unicode_text.h"

namespace sorvanta {

std::optional<QString> Utf8Stream::append(const QByteArray &chunk)
{
    m_bytes += chunk;
    if (m_isBroken)
        return std::nullopt;
    auto text = decodeUtf8(chunk);
    if (!text)
        return std::nullopt;
    const QByteArrayView rest = QByteArrayView(m_bytes).sliced(m_returned);
    if (rest.size() > chunk.size())
        text = decodeUtf8(rest);
    if (!text) {
        m_isBroken = true; // the fault lies before a whole chunk, where no later byte can mend it
        return std::nullopt;
    }
    m_returned = m_bytes.size();
    return text;
}

QString Utf8Stream::repairedText() const
{
    return decodeUtf8WithRepair(m_bytes);
}

QString Utf8Stream::repairedRest() const
{
    return decodeUtf8WithRepair(QByteArrayView(m_bytes).sliced(m_returned));
}

} // namespace sorvanta
