#include "platform/error.h"

#include <utility>

namespace sorvanta {

Error::Error(QString domain, int code, QString localizedDescription)
    : m_domain(std::move(domain))
    , m_code(code)
    , m_localizedDescription(std::move(localizedDescription))
    , m_what(m_localizedDescription.toUtf8())
{
}

CancellationError::CancellationError()
    : Error(QStringLiteral("Swift.CancellationError"), 1,
            QStringLiteral("The operation couldn’t be completed. (Swift.CancellationError error 1.)"))
{
}

} // namespace sorvanta
