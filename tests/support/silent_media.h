#pragma once

#include <QFile>
#include <QImage>
#include <QString>
#include <QtEndian>

/// A WAV file of silence, mono, 16 bits. Under a movie's name it is a movie for the application, which goes by the name
/// when it decides, and by the content when it converts.
inline void writeWav(const QString &path, double seconds, quint32 rate = 8000)
{
    const auto number = [](auto value) {
        value = qToLittleEndian(value);
        return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
    };
    const auto size = static_cast<quint32>(seconds * rate) * 2;
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("RIFF" + number(size + 36) + "WAVEfmt " + number(quint32(16)) + number(quint16(1)) + number(quint16(1))
               + number(rate) + number(rate * 2) + number(quint16(2)) + number(quint16(16)) + "data" + number(size)
               + QByteArray(static_cast<qsizetype>(size), '\0'));
}

/// A moving picture without sound: one frame.
inline void writeSilentMovie(const QString &path)
{
    QImage frame(16, 16, QImage::Format_RGB32);
    frame.fill(Qt::darkGreen);
    frame.save(path, "PNG");
}
