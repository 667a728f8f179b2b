#pragma once

#include "core/run_state.h"
#include "support/screen_workbench.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QTest>

/// The test of a screen that transcribes, or of its page: what the screen works with, and the waiting for its run.
template<typename Base>
class TranscribingTest : public Base {
protected:
    /// The run of the screen.
    virtual sorvanta::RunState &run() = 0;

    /// Waits for something that is to come; where it does not, the failure tells how the run stands.
    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(waitUntil(condition)) << (run().status() + run().errorText()).toStdString();
    }
    void waitForStatus(const QString &status)
    {
        waitFor([this, status] { return run().status() == status; });
    }

    ScreenWorkbench bench;
};

/// Sees that nothing goes on, and that nothing is told of any run that was.
template<typename Run>
void expectNoTraceOfARun(const Run &run)
{
    EXPECT_FALSE(run.isTranscribing());
    EXPECT_FALSE(run.isStopping());
    EXPECT_FALSE(run.hasActiveProcess());
    EXPECT_EQ(run.transcript(), QString());
    EXPECT_EQ(run.rawOutput(), QString());
    EXPECT_EQ(run.status(), QString());
    EXPECT_FALSE(run.error());
    EXPECT_FALSE(run.progress());
    EXPECT_EQ(run.etaText(), QString());
    EXPECT_FALSE(run.totalDuration());
    EXPECT_FALSE(run.transcriptionStart());
}
