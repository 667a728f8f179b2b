#include "history/history_json.h"
#include "platform/file_system.h"
#include "support/history_entries.h"
#include "support/printing.h"

#include <QDir>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <random>

using namespace sorvanta;

namespace {

constexpr int kills = 200;
constexpr int killsWithRecordings = 50;
constexpr int longestDelay = 12'000; // microseconds: several saves

/// Lets a process add entries and kills it in the midst of that. @return how many it knew to be saved
qsizetype addUntilKilled(const QStringList &arguments, int delay)
{
    QProcess writer;
    writer.start(HISTORY_WRITER, arguments);
    if (!writer.waitForReadyRead())
        return -1;
    QThread::usleep(static_cast<unsigned long>(delay));
    writer.kill();
    if (!writer.waitForFinished() || writer.exitStatus() != QProcess::CrashExit)
        return -1;
    const QByteArray output = writer.readAllStandardOutput();
    // A number without its line break may lack digits.
    const QList<QByteArray> lines = output.first(output.lastIndexOf('\n')).split('\n');
    return lines.last().toLongLong();
}

TEST(KilledProcess, leavesTheOldHistoryOrTheNewOneWhole)
{
    QTemporaryDir folder;
    const QString historyPath = folder.filePath("transcription-history.json");
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delay(0, longestDelay);
    int killedInMidWrite = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const qsizetype known = addUntilKilled({folder.path()}, delay(random));
        ASSERT_GT(known, 0);
        const QByteArray bytes = readFile(historyPath);
        const QList<TranscriptionHistoryEntry> entries = decodedHistory(bytes);
        ASSERT_EQ(encodedHistory(entries), bytes);
        ASSERT_TRUE(entries.size() == known || entries.size() == known + 1) << entries.size() << " of " << known;
        for (qsizetype i = 0; i < entries.size(); ++i) {
            ASSERT_EQ(entries[i].sourceLabel, QString::number(entries.size() - i));
            ASSERT_EQ(readFile(entries[i].txtPath), entries[i].text.toUtf8());
        }
        QDir unfinished(folder.path(), ".sorvanta-*", QDir::NoSort, QDir::Files | QDir::Hidden);
        for (const QString &name : unfinished.entryList()) {
            ++killedInMidWrite;
            removeItem(folder.filePath(name));
        }
    }
    RecordProperty("killedInMidWrite", killedInMidWrite);
    std::printf("%d of %d processes were killed while they wrote the history.\n", killedInMidWrite, kills);
    EXPECT_GT(killedInMidWrite, 0) << "no kill came at a moment that matters";
}

TEST(KilledProcess, losesNoRecordingWhileItsTranscriptTakesItsPlace)
{
    QTemporaryDir folder;
    const QString base = folder.filePath("sorvanta");
    const QString recording = folder.filePath("talk.wav");
    const QByteArray sound = QByteArray("sound").repeated(200'000);
    writeFileAtomically(recording, sound);
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delay(0, longestDelay);
    QSet<QString> newestAtAKill;
    qsizetype recordings = 0;
    for (int kill = 0; kill < killsWithRecordings; ++kill) {
        const qsizetype known = addUntilKilled({base, recording}, delay(random));
        ASSERT_GT(known, 0);
        const QList<TranscriptionHistoryEntry> entries = decodedHistory(readFile(base + "/transcription-history.json"));
        ASSERT_TRUE(entries.size() == known || entries.size() == known + 1) << entries.size() << " of " << known;
        for (const TranscriptionHistoryEntry &entry : entries)
            ASSERT_TRUE(readFile(entry.recordingPath.value()) == sound) << entry.sourceLabel.toStdString();
        // The text of the newest one may just have given way to that of its successor, which did not come.
        newestAtAKill.insert(entries.first().id);
        for (const TranscriptionHistoryEntry &entry : entries) {
            if (!newestAtAKill.contains(entry.id) || itemExists(entry.txtPath)) {
                ASSERT_EQ(readFile(entry.txtPath), entry.text.toUtf8());
            }
        }
        recordings = entries.size();
    }
    const qsizetype files = QDir(base + "/recordings").entryList(QDir::Files).size();
    std::printf("%lld files for %lld recordings.\n", static_cast<long long>(files), static_cast<long long>(recordings));
    EXPECT_GT(files, recordings) << "no kill came while a recording was copied";
    EXPECT_TRUE(readFile(recording) == sound);
}

} // namespace
