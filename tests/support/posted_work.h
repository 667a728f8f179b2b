#pragma once

#include "platform/main_queue.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

/// Lets all that was posted to the main thread happen, and what that posts in its turn.
inline void runPosted()
{
    for (int round = 0; round < 3; ++round) {
        bool isRun = false;
        sorvanta::postToMain([&isRun] { isRun = true; });
        EXPECT_TRUE(waitUntil([&isRun] { return isRun; }));
    }
}
