#include "platform/date_text.h"

#include <QDateTime>

namespace sorvanta {

QString shortDateText(qint64 millisecondsSince1970)
{
    return QDateTime::fromMSecsSinceEpoch(millisecondsSince1970).toString(u"M/d/yy, h:mm\u202FAP");
}

QString mediumDateText(qint64 millisecondsSince1970)
{
    return QDateTime::fromMSecsSinceEpoch(millisecondsSince1970).toString(u"MMM d, yyyy 'at' h:mm:ss\u202FAP");
}

} // namespace sorvanta
