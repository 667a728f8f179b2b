#pragma once

#include "platform/media/audio_reader.h"
#include "platform/media/audio_writer.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>

namespace sorvanta {

/// One conversion: the sound that a reader gives goes to a writer, on a thread of its own, while the caller waits for
/// a limited time. The steps are called in the order in which they stand here.
class AudioCopy {
public:
    /// Opens the source. @throws Error as AudioReader does
    explicit AudioCopy(const QString &source);

    const AudioReader &source() const { return m_reader; }

    /// Makes the source give what a file of such settings needs. @throws Error as AudioReader::start() does
    void startReading(const AudioFileSettings &settings);
    /// Makes the new file. @throws Error as AudioWriter does
    void startWriting(const QString &destination);

    /// Copies on a thread named `queueLabel` until the end or until `limit` has passed; then the copying is told to
    /// stop, and nobody waits for that. When the application quits it is told so at once, and what was written is
    /// removed. @return whether the end came in time
    /// @throws Error if the system has no thread to give
    static bool run(const std::shared_ptr<AudioCopy> &copy, const QString &queueLabel, std::chrono::milliseconds limit);

    /// Whether the reader came to the end and the writer ended the file. To be asked only when run() has returned true.
    bool isWhole() const;
    /// May be asked at any time behind startWriting().
    AudioWriter::Status writerStatus() const { return m_writer->status(); }
    QString writerErrorDescription() const { return m_writer->errorDescription(); }

private:
    void copyAll();
    bool waitForEnd(std::chrono::milliseconds limit);

    std::atomic<bool> m_interrupt = false;
    AudioReader m_reader;
    AudioFileSettings m_settings;
    QString m_destination;
    std::optional<AudioWriter> m_writer;
    std::binary_semaphore m_finished{0};
};

} // namespace sorvanta
