#include "platform/media/audio_reader.h"

#include "platform/file_errors.h"
#include "platform/media/decode_ahead.h"
#include "platform/media/sample_converter.h"
#include "platform/paths.h"

#include <cerrno>
#include <optional>
#include <vector>

namespace sorvanta {

class AudioReader::Implementation {
public:
    Implementation(const QString &path, const std::atomic<bool> *interrupt)
        : m_path(path)
        , m_decoder(path, interrupt)
    {
    }

    void start(const AudioFormat &format)
    {
        m_decoder.start();
        m_converter.emplace(format);
        m_frames.emplace(m_decoder);
    }

    std::span<const std::byte> read()
    {
        m_bytes.clear();
        try {
            while (m_status == Status::Reading && m_bytes.empty())
                step();
        } catch (const Error &failure) {
            fail(failure.localizedDescription());
        } catch (const std::exception &) {
            fail(readingError(m_path, ENOMEM).localizedDescription());
        }
        return m_bytes;
    }

    const AudioDecoder &decoder() const { return m_decoder; }
    Status status() const { return m_status; }
    QString errorDescription() const { return m_errorDescription; }

private:
    void step()
    {
        if (const AVFrame *frame = m_frames->next()) {
            m_converter->convert(*frame, m_bytes);
            m_hasDecoded = true;
            return;
        }
        if (m_decoder.hasFailed()) {
            fail(readingError(m_path, m_decoder.systemError()).localizedDescription());
        } else if (!m_hasDecoded) {
            fail(u"The file “%1” couldn’t be opened because it isn’t in the correct format."_qs.arg(
                lastPathComponent(m_path)));
        } else {
            m_converter->finish(m_bytes);
            m_status = Status::Completed;
        }
    }

    void fail(const QString &description)
    {
        m_bytes.clear();
        m_status = Status::Failed;
        m_errorDescription = description;
    }

    QString m_path;
    AudioDecoder m_decoder;
    std::optional<SampleConverter> m_converter;
    std::optional<DecodeAhead> m_frames;
    std::vector<std::byte> m_bytes;
    Status m_status = Status::Reading;
    bool m_hasDecoded = false;
    QString m_errorDescription;
};

AudioReader::AudioReader(const QString &path, const std::atomic<bool> *interrupt)
    : m_implementation(std::make_unique<Implementation>(path, interrupt))
{
}

AudioReader::~AudioReader() = default;

int AudioReader::sourceSampleRate() const
{
    return m_implementation->decoder().sampleRate();
}

int AudioReader::sourceChannels() const
{
    return m_implementation->decoder().channels();
}

void AudioReader::start(const AudioFormat &format)
{
    m_implementation->start(format);
}

std::span<const std::byte> AudioReader::read()
{
    return m_implementation->read();
}

AudioReader::Status AudioReader::status() const
{
    return m_implementation->status();
}

QString AudioReader::errorDescription() const
{
    return m_implementation->errorDescription();
}

} // namespace sorvanta
