#pragma once

#include <QString>

#include <random>

/// Short texts out of few letters, so that they are found in each other often: letters with and without case and marks,
/// written in one and in several code points, letters that fold to two, Hangul in both forms, joiners, emoji, lone
/// surrogates.
class RandomScript {
public:
    explicit RandomScript(unsigned seed)
        : m_random(seed)
    {
    }

    QString text(int least, int most)
    {
        static const QString parts[] = {
            u"a"_qs,
            u"A"_qs,
            u"b"_qs,
            u" "_qs,
            u"s"_qs,
            u"S"_qs,
            u"ß"_qs,
            u"e"_qs,
            u"é"_qs,
            u"É"_qs,
            u"\u0301"_qs,
            u"\u0323"_qs,
            u"f"_qs,
            u"i"_qs,
            u"ﬁ"_qs,
            u"\u0130"_qs,
            u"и"_qs,
            u"й"_qs,
            u"Й"_qs,
            u"\u0306"_qs,
            u"か"_qs,
            u"が"_qs,
            u"\u3099"_qs,
            u"한"_qs,
            u"하"_qs,
            u"\u1112"_qs,
            u"\u1161"_qs,
            u"\u11AB"_qs,
            u"क"_qs,
            u"\u094D"_qs,
            u"\u093E"_qs,
            u"\u0958"_qs,
            u"👍"_qs,
            u"🏽"_qs,
            u"\u200D"_qs,
            u"\uFE0F"_qs,
            u"👩"_qs,
            u"🇸"_qs,
            u"𐐀"_qs,
            u"𐐨"_qs,
            u"\u034F"_qs,
            u"K"_qs,
            u"k"_qs,
            u"漢"_qs,
            u"ש"_qs,
            u"\u05C1"_qs,
            u"\uFB2A"_qs,
            QString(QChar(0)),
            QString(QChar(0xD83D)),
            QString(QChar(0xDC4D)),
        };
        const int alphabetStart = number(0, static_cast<int>(std::size(parts)) - 8);
        const bool isMixed = number(0, 2) == 0;
        QString result;
        const int count = number(least, most);
        for (int i = 0; i < count; ++i)
            result += isMixed ? parts[number(0, static_cast<int>(std::size(parts)) - 1)]
                              : parts[alphabetStart + number(0, 7)];
        return result;
    }

    int number(int least, int most) { return std::uniform_int_distribution<int>(least, most)(m_random); }

private:
    std::mt19937 m_random;
};
