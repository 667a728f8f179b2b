#pragma once

#include <QString>

#include <random>

/// Text that looks like an engine's output and like nothing at all: timed lines, log lines, plain lines, brackets,
/// every line break, random Unicode and lone surrogates. The same seed gives the same text.
class RandomOutput {
public:
    explicit RandomOutput(unsigned seed)
        : m_random(seed)
    {
    }

    QString text()
    {
        QString result;
        const int pieces = number(0, 40);
        for (int i = 0; i < pieces; ++i) {
            result += fragment();
            if (number(0, 2) > 0)
                result += lineBreak();
        }
        return result;
    }

    /// A size for the next chunk: mostly a few units, sometimes many.
    qsizetype pieceSize() { return number(0, 3) == 0 ? number(1, 200) : number(1, 8); }

    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

private:
    QString fragment()
    {
        switch (number(0, 13)) {
        case 0:
        case 1:
        case 2:
            return QStringLiteral("[00:0%1:0%2.%3 --> 00:0%4:00.500]   ")
                       .arg(number(0, 9))
                       .arg(number(0, 9))
                       .arg(number(100, 999))
                       .arg(number(0, 9))
                   + words();
        case 3:
            return QStringLiteral("main: processing 'it's %1' (%2 samples, %3.0 sec), 4 threads")
                .arg(words())
                .arg(number(0, 99999))
                .arg(number(0, 900));
        case 4:
            return QStringLiteral("whisper_print_timings: total ") + words();
        case 5:
            return QStringLiteral("system_info: n_threads");
        case 6:
            return QStringLiteral("[") + words();
        case 7:
            return QStringLiteral("[BLANK_AUDIO]");
        case 8:
            return words() + QStringLiteral("samples, whisper.cpp") + words();
        case 9:
            return QStringLiteral(" \t");
        case 10:
            return randomUnits();
        case 11:
            return QStringLiteral("processing 'a' (1 samples, ") + words() + QStringLiteral(" sec)");
        default:
            return words();
        }
    }

    QString words()
    {
        static const QString parts[] = {u" "_qs,     u"- "_qs,     u"one"_qs,    u"é"_qs,        u"🙂"_qs,
                                        u"]"_qs,     u"["_qs,      u"\u200B"_qs, u"whisper_"_qs, u"print"_qs,
                                        u"main:"_qs, u"ERROR:"_qs, u"\u3000"_qs, u"text"_qs};
        QString result;
        const int count = number(0, 5);
        for (int i = 0; i < count; ++i)
            result += parts[number(0, static_cast<int>(std::size(parts)) - 1)];
        return result;
    }

    QString randomUnits()
    {
        QString result;
        const int count = number(0, 12);
        for (int i = 0; i < count; ++i)
            result += QChar(static_cast<char16_t>(number(0, 0xFFFF)));
        return result;
    }

    QString lineBreak()
    {
        static const QString breaks[] = {u"\n"_qs,     u"\r\n"_qs,   u"\r"_qs,     u"\u000B"_qs,
                                         u"\u000C"_qs, u"\u0085"_qs, u"\u2028"_qs, u"\u2029"_qs};
        return number(0, 1) == 0 ? breaks[0] : breaks[number(0, 7)];
    }

    std::mt19937 m_random;
};
