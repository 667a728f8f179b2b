#include "file_page_test.h"

#include <QAccessible>

namespace sorvanta {

namespace {

QByteArray printed(int from, int to)
{
    QByteArray commands;
    for (int line = from; line < to; ++line)
        commands += "print [x] line number " + QByteArray::number(line) + " of a long talk%0A\n";
    return commands;
}

class TranscriptLines : public FilePageTest {
protected:
    QQuickItem *list() const { return item("transcriptLines"); }
    QQuickItem *contentItem() const { return list()->property("contentItem").value<QQuickItem *>(); }
    double contentY() const { return list()->property("contentY").toDouble(); }
    void scrollTo(double y) { list()->setProperty("contentY", y); }

    /// All rows that exist, whether in sight or not.
    QList<QQuickItem *> rows() const
    {
        QList<QQuickItem *> found;
        for (QQuickItem *child : contentItem()->childItems()) {
            if (child->property("text").isValid() && child->isVisible())
                found << child;
        }
        return found;
    }
    /// The text of the row that is at the top of what is seen.
    QString topRow() const
    {
        QQuickItem *top = nullptr;
        for (int gap = 0; gap <= 4 && !top; ++gap) // between the rows there is nothing
            QMetaObject::invokeMethod(list(), "itemAt", Q_RETURN_ARG(QQuickItem *, top), Q_ARG(qreal, 20.0),
                                      Q_ARG(qreal, contentY() + 17 + gap));
        return top ? top->property("text").toString() : QString();
    }
};

TEST_F(TranscriptLines, makesRowsOnlyForWhatIsInSight)
{
    showPage();
    start(printed(0, 12000));
    waitFor([this] { return run().status() == "Done"; });
    settle();
    EXPECT_EQ(list()->property("count").toInt(), 12000);
    const double rowHeight = 21;
    const int inSight = qCeil((list()->height() + 2 * 400) / rowHeight);
    EXPECT_GT(rows().size(), 5);
    EXPECT_LE(rows().size(), inSight + 2) << "what is seen and a little around it";
    EXPECT_EQ(topRow(), "line number 0 of a long talk");
    tabTo(list());
    press(Qt::Key_End);
    settle();
    EXPECT_LE(rows().size(), inSight + 2);
    QStringList texts;
    for (const QQuickItem *row : rows())
        texts << row->property("text").toString();
    EXPECT_TRUE(texts.contains("line number 11999 of a long talk"));
}

TEST_F(TranscriptLines, holdsStillWhileLinesAreAppended)
{
    showPage();
    QByteArray commands = printed(0, 400) + bench.engine.awaitGate();
    for (int piece = 0; piece < 20; ++piece)
        commands += printed(400 + piece * 100, 500 + piece * 100) + "sleep 20\n";
    start(commands + "sleep 60000\n");
    waitFor([this] { return run().lines()->count() == 400; });
    settle();
    scrollTo(3003);
    settle();
    const double y = contentY();
    const QString top = topRow();
    EXPECT_EQ(y, 3003);
    EXPECT_FALSE(top.isEmpty());
    bench.engine.openGate();
    while (run().lines()->count() < 2400) {
        const int before = run().lines()->count();
        waitFor([this, before] { return run().lines()->count() > before; });
        ASSERT_EQ(contentY(), y);
        ASSERT_EQ(topRow(), top);
    }
    settle();
    EXPECT_EQ(contentY(), y);
    EXPECT_EQ(topRow(), top);
}

TEST_F(TranscriptLines, holdsStillAtTheTopAndAtTheEnd)
{
    showPage();
    start(printed(0, 100) + bench.engine.awaitGate("at the top") + printed(100, 200)
          + bench.engine.awaitGate("at the end") + printed(200, 300) + "sleep 60000\n");
    waitFor([this] { return run().lines()->count() == 100; });
    settle();
    const double atTop = contentY();
    bench.engine.openGate("at the top");
    waitFor([this] { return run().lines()->count() == 200; });
    settle();
    EXPECT_EQ(contentY(), atTop);
    tabTo(list());
    press(Qt::Key_End);
    const double atEnd = contentY();
    EXPECT_GT(atEnd, 0);
    bench.engine.openGate("at the end");
    waitFor([this] { return run().lines()->count() == 300; });
    settle();
    EXPECT_EQ(contentY(), atEnd);
}

TEST_F(TranscriptLines, beginsAtTheTopAgainWithTheNextRun)
{
    showPage();
    start(printed(0, 300));
    waitFor([this] { return run().status() == "Done"; });
    settle();
    const double atTop = contentY();
    scrollTo(2000);
    start(printed(0, 200));
    waitFor([this] { return run().status() == "Done"; });
    settle();
    EXPECT_EQ(contentY(), atTop);
}

TEST_F(TranscriptLines, scrollsByKeysWithinItsEnds)
{
    showPage();
    start(printed(0, 300));
    waitFor([this] { return run().status() == "Done"; });
    tabTo(list());
    const double top = contentY();
    press(Qt::Key_Up);
    EXPECT_EQ(contentY(), top);
    press(Qt::Key_Down);
    EXPECT_GT(contentY(), top);
    const double down = contentY();
    press(Qt::Key_PageDown);
    EXPECT_GT(contentY(), down + list()->height() / 2);
    press(Qt::Key_End);
    const double end = contentY();
    press(Qt::Key_Down);
    EXPECT_EQ(contentY(), end);
    press(Qt::Key_Home);
    EXPECT_EQ(contentY(), top);
}

TEST_F(TranscriptLines, eachRowIsATextThatCanBeSelectedAndIsReadOut)
{
    showPage();
    start("print [x] Good morning%0A[x] <b>Two</b>%0A\n");
    waitFor([this] { return run().status() == "Done"; });
    settle();
    ASSERT_EQ(rows().size(), 2);
    const QStringList words = spokenWords(accessible(list()));
    EXPECT_TRUE(words.contains("Good morning"));
    EXPECT_TRUE(words.contains("<b>Two</b>")) << "words are shown as they are";
    const QRectF row = place(rows().first());
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, (row.topLeft() + QPointF(16, 9)).toPoint());
    QTest::mouseMove(window.get(), (row.topLeft() + QPointF(60, 9)).toPoint());
    QTest::mouseMove(window.get(), (row.topLeft() + QPointF(400, 9)).toPoint());
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, (row.topLeft() + QPointF(400, 9)).toPoint());
    const QQuickItem *words0 = rows().first()->childItems().first();
    EXPECT_EQ(words0->property("selectedText").toString(), "Good morning");
    EXPECT_TRUE(words0->property("readOnly").toBool());
}

TEST_F(TranscriptLines, saysThatThereIsNoTranscriptYet)
{
    showType("Sorvanta.Screens", "TranscriptLines",
             {{"pane", QVariant::fromValue(screen.pane())}, {"width", 600}, {"height", 300}});
    EXPECT_TRUE(isShown("noTranscript"));
    EXPECT_EQ(text("noTranscript"), "No transcript yet.");
    start("print [x] One%0A\n");
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_FALSE(isShown("noTranscript"));
}

} // namespace

} // namespace sorvanta
