#include "core/languages.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <string>

using namespace sorvanta;

namespace {

TEST(LanguageOptions, areTheRowsOfThePickerInTheirOrder)
{
    std::string rows;
    for (const LanguageOption &option : languageOptions())
        rows += std::string(option.code) + " " + option.name + "; ";
    EXPECT_EQ(rows, "auto Auto-detect; af Afrikaans; am Amharic; ar Arabic; as Assamese; az Azerbaijani; "
                    "ba Bashkir; be Belarusian; bg Bulgarian; bn Bengali; bo Tibetan; br Breton; "
                    "bs Bosnian; ca Catalan; cs Czech; cy Welsh; da Danish; de German; "
                    "el Greek; en English; es Spanish; et Estonian; eu Basque; fa Persian; "
                    "fi Finnish; fo Faroese; fr French; gl Galician; gu Gujarati; ha Hausa; "
                    "haw Hawaiian; he Hebrew; hi Hindi; hr Croatian; ht Haitian Creole; hu Hungarian; "
                    "hy Armenian; id Indonesian; is Icelandic; it Italian; ja Japanese; jw Javanese; "
                    "ka Georgian; kk Kazakh; km Khmer; kn Kannada; ko Korean; la Latin; "
                    "lb Luxembourgish; ln Lingala; lo Lao; lt Lithuanian; lv Latvian; mg Malagasy; "
                    "mi Maori; mk Macedonian; ml Malayalam; mn Mongolian; mr Marathi; ms Malay; "
                    "mt Maltese; my Myanmar; ne Nepali; nl Dutch; nn Norwegian Nynorsk; no Norwegian; "
                    "oc Occitan; pa Punjabi; pl Polish; ps Pashto; pt Portuguese; ro Romanian; "
                    "ru Russian; sa Sanskrit; sd Sindhi; si Sinhala; sk Slovak; sl Slovenian; "
                    "sn Shona; so Somali; sq Albanian; sr Serbian; su Sundanese; sv Swedish; "
                    "sw Swahili; ta Tamil; te Telugu; tg Tajik; th Thai; tk Turkmen; "
                    "tl Tagalog; tr Turkish; tt Tatar; uk Ukrainian; ur Urdu; uz Uzbek; "
                    "vi Vietnamese; yi Yiddish; yo Yoruba; zh Chinese; yue Cantonese; ");
    EXPECT_EQ(languageOptions().size(), 101U);
}

TEST(EffectiveLanguage, isTrimmedLowerCasedAndNeverEmpty)
{
    EXPECT_EQ(effectiveLanguage(u"  EN "), u"en"_qs);
    EXPECT_EQ(effectiveLanguage(u"\r\n\tde\u2028"), u"de"_qs);
    EXPECT_EQ(effectiveLanguage(u""), u"auto"_qs);
    EXPECT_EQ(effectiveLanguage(u" \n"), u"auto"_qs);
    EXPECT_EQ(effectiveLanguage(u"Klingon"), u"klingon"_qs) << "it is not compared with the picker's rows";
}

} // namespace
