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
    static std::shared_ptr<AudioCopy> open(const QString &source);
    explicit AudioCopy(const QString &source);

    const AudioReader &source() const { return m_reader; }

    /// Makes the source give what a file of such settings needs. @throws Error as AudioReader::start() does
    void startReading(const AudioFileSettings &settings);
    /// Makes the new file. @throws Error as AudioWriter does
    void startWriting(const QString &destination);

    /// Copies on a thread named `queueLabel` until the end or until `limit` has passed; then the copying is told to
    /// stop, and nobody waits for that. @return whether the end came in time
    static bool run(const std::shared_ptr<AudioCopy> &copy, const QString &queueLabel, std::chrono::milliseconds limit);

    /// To be asked only when run() has returned true.
    AudioReader::Status readerStatus() const { return m_reader.status(); }
    // May be asked at any time behind startWriting().
    AudioWriter::Status writerStatus() const { return m_writer->status(); }
    QString writerErrorDescription() const { return m_writer->errorDescription(); }

private:
    void copyAll();

    std::atomic<bool> m_interrupt = false;
    AudioReader m_reader;
    AudioFileSettings m_settings;
    std::optional<AudioWriter> m_writer;
    std::binary_semaphore m_finished{0};
};

} // namespace sorvanta
