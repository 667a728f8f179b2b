#include "platform/json_encoding.h"

#include "platform/file_errors.h"

#include <QString>
#include <QtEndian>

namespace sorvanta {

namespace {

enum class Form { Utf8, Utf16BigEndian, Utf16LittleEndian, Utf32BigEndian };

struct Encoding {
    Form form;
    qsizetype markSize;
};

Encoding encodingByMark(const QByteArray &document)
{
    if (document.startsWith("\xEF\xBB\xBF"))
        return {Form::Utf8, 3};
    if (document.startsWith(QByteArrayView("\0\0\xFE\xFF", 4)))
        return {Form::Utf32BigEndian, 4};
    if (document.startsWith("\xFF\xFE"))
        return {Form::Utf16LittleEndian, 2};
    if (document.startsWith("\xFE\xFF"))
        return {Form::Utf16BigEndian, 2};
    return {Form::Utf8, 0};
}

/// A document begins with an ASCII character, so the zeros around it tell how wide a character is.
Form formByZeros(const QByteArray &document)
{
    const auto isZero = [&document](qsizetype i) { return i < document.size() && document[i] == '\0'; };
    if (isZero(0) && isZero(1) && isZero(2))
        return Form::Utf32BigEndian;
    if (isZero(0))
        return Form::Utf16BigEndian;
    return isZero(1) ? Form::Utf16LittleEndian : Form::Utf8;
}

QString decodedUtf16(QByteArrayView bytes, bool isBigEndian)
{
    if (bytes.size() % 2 != 0)
        throw incorrectFormatError();
    QString text(bytes.size() / 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char *unit = bytes.data() + 2 * i;
        text[i] = QChar(isBigEndian ? qFromBigEndian<quint16>(unit) : qFromLittleEndian<quint16>(unit));
    }
    if (!text.isValidUtf16())
        throw incorrectFormatError();
    return text;
}

QString decodedUtf32(QByteArrayView bytes)
{
    if (bytes.size() % 4 != 0)
        throw incorrectFormatError();
    QString text;
    for (qsizetype i = 0; i < bytes.size(); i += 4) {
        const char32_t character = qFromBigEndian<quint32>(bytes.data() + i);
        if (character > QChar::LastValidCodePoint || QChar::isSurrogate(character))
            throw incorrectFormatError();
        text += QChar::fromUcs4(character);
    }
    return text;
}

} // namespace

QByteArray utf8JsonDocument(const QByteArray &document)
{
    const auto [formByMark, markSize] = encodingByMark(document);
    const Form form = markSize > 0 ? formByMark : formByZeros(document);
    const QByteArrayView bytes = QByteArrayView(document).sliced(markSize);
    switch (form) {
    case Form::Utf16BigEndian:
        return decodedUtf16(bytes, true).toUtf8();
    case Form::Utf16LittleEndian:
        return decodedUtf16(bytes, false).toUtf8();
    case Form::Utf32BigEndian:
        return decodedUtf32(bytes).toUtf8();
    case Form::Utf8:
        break;
    }
    return markSize > 0 ? document.sliced(markSize) : document;
}

} // namespace sorvanta
