#include "core/segment_watch.h"

#include "core/live_transcript.h"
#include "core/transcript_text.h"
#include "support/random_output.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

/// Feeds pieces as a run does.
class FollowedOutput {
public:
    void append(QStringView piece)
    {
        const qsizetype from = m_transcript.rawOutput().size();
        const qsizetype lineStart = m_transcript.unfinishedLineStart();
        m_transcript.append(piece);
        watch.take(m_transcript.rawOutput(), from, lineStart);
    }
    const QString &rawOutput() const { return m_transcript.rawOutput(); }

    SegmentWatch watch;

private:
    LiveTranscript m_transcript;
};

TEST(SegmentWatch, equalsThePureFunctionAfterEveryPieceOfAnyOutput)
{
    int withSegments = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        SCOPED_TRACE(seed);
        RandomOutput random(seed);
        const QString output = random.text();
        FollowedOutput followed;
        for (qsizetype end = 0, from = 0; end < output.size(); from = end) {
            end = std::min(output.size(), from + random.pieceSize());
            followed.append(QStringView(output).sliced(from, end - from));
            for (const bool stripDashes : {false, true}) {
                ASSERT_EQ(followed.watch.hasSegments(stripDashes),
                          !parseTimedSegments(followed.rawOutput(), stripDashes).isEmpty());
            }
        }
        withSegments += followed.watch.hasSegments(false) ? 1 : 0;
    }
    EXPECT_GT(withSegments, 100);
    EXPECT_LT(withSegments, 600);
}

TEST(SegmentWatch, seesATimedLineThatComesUnitByUnit)
{
    FollowedOutput followed;
    const QString line = u"log\n[00:00:00.000 --> 00:00:01.500]   - A"_qs;
    for (const QChar unit : line) {
        EXPECT_FALSE(followed.watch.hasSegments(false));
        followed.append(QStringView(&unit, 1));
        if (unit == u'-' && followed.watch.hasSegments(false))
            break; // the dash of the text
    }
    EXPECT_TRUE(followed.rawOutput().endsWith(u"   -"_qs)) << followed.rawOutput().toStdString();
}

TEST(SegmentWatch, isNotDeceivedByALineWithoutText)
{
    FollowedOutput followed;
    followed.append(u"[00:00:00.000 --> 00:00:01.500]   \n");
    EXPECT_FALSE(followed.watch.hasSegments(false));
    followed.append(u"words\n");
    EXPECT_FALSE(followed.watch.hasSegments(false));
}

} // namespace
