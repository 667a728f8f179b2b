#include "core/log_lines_model.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QRandomGenerator>
#include <QSignalSpy>

using namespace sorvanta;

namespace {

class LogLines : public testing::Test {
protected:
    QStringList rows() const
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts << model.data(model.index(row), LogLinesModel::TextRole).toString();
        return texts;
    }

    QString log;
    LogLinesModel model{[this]() -> const QString & { return log; }};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(LogLines, areNoneBeforeTheLogIsRead)
{
    log = u"one\n"_qs;
    EXPECT_EQ(rows(), QStringList());
    model.reset();
    EXPECT_EQ(rows(), QStringList{u"one"_qs});
    model.clear();
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(LogLines, keepBlankLinesButHaveNoneBehindTheLastLineBreak)
{
    log = u"one\n\n two\r\nthree\n"_qs;
    model.reset();
    EXPECT_EQ(rows(), QStringList({u"one"_qs, QString(), u" two"_qs, u"three"_qs}));
}

TEST_F(LogLines, growWithTheLogAndAnnounceOnlyWhatIsNew)
{
    log = u"one\ntw"_qs;
    model.reset();
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    log += u"o\r"_qs;
    model.update();
    EXPECT_EQ(rows(), QStringList({u"one"_qs, u"two"_qs}));
    EXPECT_EQ(inserted.count(), 0);
    log += u"\nthree"_qs;
    model.update();
    EXPECT_EQ(rows(), QStringList({u"one"_qs, u"two"_qs, u"three"_qs}));
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 2);
    EXPECT_EQ(inserted[0][2].toInt(), 2);
    EXPECT_EQ(resets.count(), 0);
}

TEST_F(LogLines, beginAnewWhenTheLogIsShorter)
{
    log = u"one\ntwo\n"_qs;
    model.reset();
    log = u"x"_qs;
    model.update();
    EXPECT_EQ(rows(), QStringList{u"x"_qs});
    log.clear();
    model.update();
    EXPECT_EQ(rows(), QStringList());
}

TEST_F(LogLines, partALongLineWithoutCuttingACharacterOfTwoUnits)
{
    log = QString(1999, u'x') + QString::fromUcs4(U"\U0001F469") + QString(3000, u'y') + u'\n';
    model.reset();
    EXPECT_EQ(rows().size(), 3);
    EXPECT_EQ(rows()[0].size(), 2001);
    EXPECT_TRUE(rows()[1].startsWith(u'y'));
    EXPECT_EQ(rows().join(QString()) + u'\n', log);
}

TEST_F(LogLines, areThoseOfTheWholeLogHoweverItCame)
{
    const QStringList pieces = {u"\r"_qs,     u"\n"_qs,
                                u"\r\n"_qs,   u"a"_qs,
                                u"word"_qs,   QString(2100, u'z'),
                                u"\u2028"_qs, QString::fromUcs4(U"\U0001F469")};
    QRandomGenerator random(7);
    for (int round = 0; round < 100; ++round) {
        log.clear();
        model.reset();
        for (int step = 0; step < 20; ++step) {
            log += pieces[random.bounded(static_cast<int>(pieces.size()))];
            model.update();
        }
        const QStringList grown = rows();
        model.reset();
        ASSERT_EQ(grown, rows());
    }
}

} // namespace
