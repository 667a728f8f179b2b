#include "platform/utf8_stream.h"

#include "platform/unicode_text.h"

namespace sorvanta {

std::optional<QString> Utf8Stream::append(const QByteArray &chunk)
{
    m_rest += chunk;
    if (m_isBroken)
        return std::nullopt;
    auto text = decodeUtf8(chunk);
    if (!text)
        return std::nullopt;
    if (m_rest.size() > chunk.size())
        text = decodeUtf8(m_rest);
    if (!text) {
        m_isBroken = true; // the fault lies before a whole chunk, where no later byte can mend it
        return std::nullopt;
    }
    m_text += *text;
    m_rest.clear();
    return text;
}

QString Utf8Stream::decodeRest() const
{
    return decodeUtf8WithRepair(m_rest);
}

} // namespace sorvanta
