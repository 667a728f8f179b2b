#include "app/support_text.h"

namespace sorvanta {

QString supportText(const QString &supportAddress)
{
    return QStringLiteral("If you run into any issues, please email me at ") + supportAddress
           + QStringLiteral(" and include as many details as you can (what you did, what happened, screenshots if "
                            "possible). That helps me fix the problem faster and support you better.");
}

QString modelIssueText()
{
    return QStringLiteral("For model issues, include which model and language you used.");
}

} // namespace sorvanta
