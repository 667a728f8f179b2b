#include "core/audio_preparer.h"
#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <thread>

using namespace sorvanta;

namespace {

class KilledRecording : public testing::TestWithParam<int> { };

/// Kills a recording at that many milliseconds. @return what it had been handed by then, in seconds
double recordUntilKilled(int milliseconds)
{
    QProcess process;
    process.start(QStringLiteral(MEETING_WRITER), {});
    QByteArray output;
    const bool isThere = waitUntil([&] {
        output += process.readAllStandardOutput();
        const QByteArray whole = output.first(output.lastIndexOf('\n') + 1).trimmed();
        return whole.mid(whole.lastIndexOf('\n') + 1).toInt() >= milliseconds;
    });
    EXPECT_TRUE(isThere) << output.toStdString() << process.readAllStandardError().toStdString();
    process.kill();
    process.waitForFinished();
    EXPECT_EQ(process.exitStatus(), QProcess::CrashExit);
    output += process.readAllStandardOutput();
    const QByteArray whole = output.first(output.lastIndexOf('\n') + 1).trimmed();
    return whole.mid(whole.lastIndexOf('\n') + 1).toInt() / 1000.0;
}

TEST_P(KilledRecording, isThereUpToTwoSecondsBefore)
{
    MediaFolder folder;
    const double handedOver = recordUntilKilled(GetParam());
    const QStringList names = folder.names();
    ASSERT_EQ(names.size(), 1) << "found again in the temporary folder";
    EXPECT_TRUE(names[0].startsWith(u"meeting-system-"_qs) && names[0].endsWith(u".m4a"_qs));
    const QString path = folder.path(names[0]);
    const std::vector<double> samples = samplesOf(path);
    const double kept = static_cast<double>(samples.size()) / 44100;
    std::printf("%.2f of %.2f seconds are kept.\n", kept, handedOver);
    EXPECT_GE(kept, handedOver - 2);
    for (int second = 0; second + 1 < kept; ++second) {
        const auto from = samples.begin() + static_cast<std::ptrdiff_t>((second + 0.3) * 44100);
        EXPECT_NEAR(toneAmplitude(std::vector<double>(from, from + 17640), 500 + 100 * second, 44100), 0.25, 0.02);
    }
    // What the engine is given of it. The conversion belongs to a worker.
    std::optional<QString> wav;
    std::thread([&] { wav = AudioPreparer(TemporaryFiles()).convertForMeeting(path); }).join();
    EXPECT_GE(mediaDuration(*wav), handedOver - 2);
}

INSTANTIATE_TEST_SUITE_P(Moments, KilledRecording, testing::Values(2500, 3150, 6020));

} // namespace
