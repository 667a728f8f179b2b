#include "core/language_choice.h"

#include "core/languages.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

using namespace sorvanta;

namespace {

TEST(LanguageChoice, beginsWithAutoDetection)
{
    const LanguageChoice choice;
    EXPECT_EQ(choice.language(), u"auto"_qs);
    EXPECT_EQ(choice.index(), 0);
}

TEST(LanguageChoice, hasARowForEachLanguageInTheTablesOrder)
{
    const QStringList labels = LanguageChoice::labels();
    ASSERT_EQ(labels.size(), 101);
    EXPECT_EQ(labels.first(), u"Auto-detect (auto)"_qs);
    EXPECT_EQ(labels[17], u"German (de)"_qs);
    EXPECT_EQ(labels[99], u"Chinese (zh)"_qs);
    EXPECT_EQ(labels.last(), u"Cantonese (yue)"_qs);
}

TEST(LanguageChoice, everyRowChoosesItsOwnCode)
{
    LanguageChoice choice;
    const auto options = languageOptions();
    for (int row = 0; row < static_cast<int>(options.size()); ++row) {
        choice.choose(row);
        EXPECT_EQ(choice.language(), QLatin1String(options[static_cast<std::size_t>(row)].code));
        EXPECT_EQ(choice.index(), row);
    }
}

TEST(LanguageChoice, ignoresARowThatIsNotThere)
{
    LanguageChoice choice;
    choice.choose(17);
    choice.choose(-1);
    choice.choose(101);
    EXPECT_EQ(choice.language(), u"de"_qs);
}

TEST(LanguageChoice, takesACodeThatHasNoRow)
{
    LanguageChoice choice;
    choice.setLanguage(u"  EN "_qs);
    EXPECT_EQ(choice.language(), u"  EN "_qs);
    EXPECT_EQ(choice.index(), -1);
}

TEST(LanguageChoice, saysEachChangeOnceAndNothingElse)
{
    LanguageChoice choice;
    QSignalSpy spy(&choice, &LanguageChoice::languageChanged);
    choice.choose(0);
    EXPECT_EQ(spy.count(), 0);
    choice.choose(17);
    EXPECT_EQ(spy.count(), 1);
    choice.setLanguage(u"de"_qs);
    EXPECT_EQ(spy.count(), 1);
}

} // namespace
