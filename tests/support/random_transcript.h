#pragma once

#include "core/transcript_text.h"
#include "platform/unicode_text.h"

#include <QList>
#include <QString>

#include <random>

/// Transcripts of any characters: words, punctuation that formats give a meaning to, scripts of both directions,
/// emoji, blanks of all kinds, controls, any code point. The same seed gives the same ones.
class RandomTranscript {
public:
    explicit RandomTranscript(unsigned seed)
        : m_random(seed)
    {
    }

    /// Timed lines, one behind the other in time and of one line each, as the engine's are.
    QList<sorvanta::TranscriptSegment> segments(qsizetype count)
    {
        QList<sorvanta::TranscriptSegment> result;
        int milliseconds = 0;
        for (qsizetype i = 0; i < count; ++i) {
            const int start = milliseconds + number(0, 1500);
            milliseconds = start + number(1, 1500);
            result.append({timecode(start), timecode(milliseconds), line()});
        }
        return result;
    }

    /// One line with something to see on it.
    QString line()
    {
        QString result;
        do {
            result.clear();
            for (int pieces = number(1, 8); pieces > 0; --pieces)
                result += piece();
            result.removeIf([](QChar unit) { return sorvanta::isNewline(unit.unicode()); });
        } while (sorvanta::trimmedOfWhitespaceAndNewlines(result).isEmpty());
        return result;
    }

    /// Lines with line breaks of all kinds between them and perhaps around them.
    QString lines()
    {
        static const QString breaks[] = {u"\n"_qs, u"\n"_qs,     u"\n"_qs,     u"\n\n"_qs,   u"\r\n"_qs,  u"\r"_qs,
                                         u" "_qs,  u"\u000B"_qs, u"\u000C"_qs, u"\u0085"_qs, u"\u2028"_qs};
        QString result;
        for (int count = number(1, 6); count > 0; --count)
            result += pick(breaks) + line();
        return result + pick(breaks);
    }

    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

private:
    template<std::size_t Size>
    const QString &pick(const QString (&choices)[Size])
    {
        return choices[number(0, static_cast<int>(Size) - 1)];
    }

    QString piece()
    {
        static const QString words[] = {u"harbour"_qs, u"naïve"_qs, u"e\u0301"_qs, u"שלום"_qs,
                                        u"مرحبا"_qs,   u"会議"_qs,  u"🎙"_qs,    u"👩‍👩‍👧"_qs,
                                        u"🇩🇪"_qs,      u"42"_qs,    u"7."_qs,      u"NOTE"_qs};
        static const QString marks[] = {u"\""_qs,  u"\"\""_qs, u"'"_qs,   u","_qs, u";"_qs,   u"<"_qs,    u">"_qs,
                                        u"&"_qs,   u"&lt;"_qs, u"<b>"_qs, u"/"_qs, u"\\"_qs,  u"*"_qs,    u"**"_qs,
                                        u"_"_qs,   u"`"_qs,    u"["_qs,   u"]"_qs, u"(x)"_qs, u"#"_qs,    u"- "_qs,
                                        u"-->"_qs, u"%1"_qs,   u"{"_qs,   u"}"_qs, u"\\N"_qs, u"<!--"_qs, u"&#0;"_qs};
        static const QString blanks[] = {u" "_qs,      u" "_qs,      u"  "_qs,     u"\t"_qs,    u"\u00A0"_qs,
                                         u"\u200B"_qs, u"\u200F"_qs, u"\u3000"_qs, u"\uFEFF"_qs};
        switch (number(0, 9)) {
        case 0:
        case 1:
        case 2:
            return pick(words);
        case 3:
        case 4:
            return pick(marks);
        case 5:
        case 6:
            return pick(blanks);
        case 7:
            return QChar(static_cast<char16_t>(number(0, 0x1F)));
        case 8:
            return QChar(static_cast<char16_t>(number(0x7F, 0x9F)));
        default:
            return anyCharacter();
        }
    }

    QString anyCharacter()
    {
        char32_t character = static_cast<char32_t>(number(0x20, 0x10FFFF));
        if (QChar::isSurrogate(character))
            character = QChar::ReplacementCharacter;
        return QString::fromUcs4(&character, 1);
    }

    static QString timecode(int milliseconds)
    {
        const auto padded = [](int value, int digits) { return QString::number(value).rightJustified(digits, u'0'); };
        return padded(milliseconds / 3'600'000, 2) + u':' + padded(milliseconds / 60'000 % 60, 2) + u':'
               + padded(milliseconds / 1000 % 60, 2) + u'.' + padded(milliseconds % 1000, 3);
    }

    std::mt19937 m_random;
};
