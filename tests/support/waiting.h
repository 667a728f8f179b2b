#pragma once

#include <QTest>

/// How long a test waits for what must come, in milliseconds. Only a test that fails waits as long as this; one on a
/// machine that is busy with much else may need a good part of it.
inline constexpr int patience = 60'000;

/// Runs the event loop until `condition` holds; whether it came to hold. For work of minutes `milliseconds` says more.
template<typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, int milliseconds = patience)
{
    return QTest::qWaitFor(condition, milliseconds);
}
