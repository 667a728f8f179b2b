#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// GoogleTest finds these by the namespace of their arguments; without them a failure prints bytes.

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(QStringView text, std::ostream *out)
{
    PrintTo(text.toString(), out);
}

inline void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"' << bytes.toStdString() << '"';
}
