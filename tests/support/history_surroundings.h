#pragma once

#include "history/transcription_history_store.h"

#include <memory>

namespace sorvanta {

/// A clock that goes on by a millisecond with each reading, and ids that can be foretold: the first UUID begins with
/// "0000AA", the next with "0000AB".
struct FakeHistorySurroundings {
    HistorySurroundings in(const QString &baseFolder) const
    {
        const auto clock = [now = now] {
            const double reading = *now;
            *now += 0.001;
            return reading;
        };
        const auto newUuidText = [count = count] {
            const int number = (*count)++;
            return u"0000%1%2AA-0000-4000-8000-000000000000"_qs.arg(QChar('A' + number / 26), QChar('A' + number % 26));
        };
        return {baseFolder, clock, newUuidText};
    }

    /// Seconds since 1970 at the next reading.
    std::shared_ptr<double> now = std::make_shared<double>(1'770'000'000.1239);
    std::shared_ptr<int> count = std::make_shared<int>(0);
};

} // namespace sorvanta
