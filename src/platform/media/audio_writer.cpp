#include "platform/media/audio_writer.h"

#include "platform/file_errors.h"
#include "platform/media/frame_encoder.h"
#include "platform/media/output_file.h"
#include "platform/media/output_format.h"
#include "platform/media/parallel_encoder.h"

#include <QFile>

#include <cerrno>

namespace sorvanta {

namespace {

using Container = AudioFileSettings::Container;

OutputFormat newFormat(const AudioFileSettings &settings)
{
    ffmpeg::prepareLibraries();
    OutputFormat format = newOutputFormat(settings.container == Container::Wav ? "wav" : "ipod");
    format->flush_packets = settings.isReadableWhileWritten; // else the file is written in large pieces
    return format;
}

std::unique_ptr<TrackEncoder> newEncoder(const AudioFileSettings &settings)
{
    if (settings.container == Container::M4a && settings.aacSearch == AudioFileSettings::AacSearch::FastInParallel)
        return std::make_unique<ParallelEncoder>(settings);
    return std::make_unique<FrameEncoder>(settings);
}

} // namespace

class AudioWriter::Implementation {
public:
    /// The file is made last, so that nothing is left of one that is not possible.
    Implementation(const QString &path, const AudioFileSettings &settings)
        : m_path(path)
        , m_isReadableWhileWritten(settings.isReadableWhileWritten)
        , m_format(newFormat(settings))
        , m_stream(ffmpeg::checked(avformat_new_stream(m_format.get(), nullptr)))
        , m_encoder(newEncoder(settings))
        , m_file(path)
    {
        m_format->pb = m_file.context();
        m_encoder->describe(*m_stream);
        const int result = writeHeader();
        if (result >= 0 && m_file.systemError() == 0)
            return;
        QFile::remove(path);
        if (m_file.systemError() != 0)
            throw writingError(path, m_file.systemError());
        ffmpeg::checked(result);
    }

    bool append(std::span<const std::byte> frames)
    {
        if (status() == Status::Writing)
            attempt([&] { m_encoder->encode(frames, [this](AVPacket &packet) { write(packet); }); });
        return status() == Status::Writing;
    }

    bool appendSilence(std::int64_t frames)
    {
        if (status() == Status::Writing)
            attempt([&] { m_encoder->encodeSilence(frames, [this](AVPacket &packet) { write(packet); }); });
        return status() == Status::Writing;
    }

    bool finish()
    {
        if (status() != Status::Writing)
            return status() == Status::Completed;
        attempt([this] {
            m_encoder->finish([this](AVPacket &packet) { write(packet); });
            ffmpeg::checked(av_write_trailer(m_format.get()));
            avio_flush(m_format->pb);
        });
        m_file.close();
        if (m_file.systemError() != 0)
            fail(writingError(m_path, m_file.systemError()).localizedDescription());
        if (status() == Status::Writing)
            m_status = Status::Completed;
        return status() == Status::Completed;
    }

    Status status() const { return m_status; }
    QString errorDescription() const { return status() == Status::Failed ? m_errorDescription : QString(); }

private:
    int writeHeader()
    {
        AVDictionary *options = nullptr;
        // A WAV file that grows over four gigabytes becomes one that can be so large.
        av_dict_set(&options, "rf64", "auto", 0);
        // Of an M4A: its length is told in frames and not in milliseconds.
        av_dict_set_int(&options, "movie_timescale", m_encoder->timeBase().den, 0);
        if (m_isReadableWhileWritten) {
            // A table of contents goes out with each second of sound, in place of one for all at the end.
            av_dict_set(&options, "movflags", "delay_moov+default_base_moof", 0);
            av_dict_set(&options, "frag_duration", "1000000", 0);
        }
        const int result = avformat_write_header(m_format.get(), &options);
        av_dict_free(&options);
        avio_flush(m_format->pb);
        return result;
    }

    void write(AVPacket &packet)
    {
        packet.stream_index = m_stream->index;
        av_packet_rescale_ts(&packet, m_encoder->timeBase(), m_stream->time_base);
        ffmpeg::checked(av_write_frame(m_format.get(), &packet));
        ffmpeg::checked(m_format->pb->error);
    }

    template<typename Work>
    void attempt(Work work)
    {
        try {
            work();
        } catch (const Error &failure) {
            fail(m_file.systemError() == 0 ? failure.localizedDescription()
                                           : writingError(m_path, m_file.systemError()).localizedDescription());
        } catch (const std::exception &) {
            fail(writingError(m_path, ENOMEM).localizedDescription());
        }
    }

    /// The first failure stays.
    void fail(const QString &description)
    {
        if (status() == Status::Failed)
            return;
        m_errorDescription = description;
        m_status = Status::Failed;
    }

    QString m_path;
    bool m_isReadableWhileWritten;
    OutputFormat m_format;
    AVStream *m_stream;
    std::unique_ptr<TrackEncoder> m_encoder;
    OutputFile m_file;
    std::atomic<Status> m_status = Status::Writing;
    QString m_errorDescription; ///< written once, before the status becomes Failed
};

bool AudioWriter::canWrite(const AudioFileSettings &settings)
{
    try {
        newFormat(settings);
        newEncoder(settings);
        return true;
    } catch (const Error &) {
        return false;
    }
}

AudioWriter::AudioWriter(const QString &path, const AudioFileSettings &settings)
    : m_implementation(std::make_unique<Implementation>(path, settings))
{
}

AudioWriter::~AudioWriter() = default;

bool AudioWriter::append(std::span<const std::byte> frames)
{
    return m_implementation->append(frames);
}

bool AudioWriter::appendSilence(std::int64_t frames)
{
    return m_implementation->appendSilence(frames);
}

bool AudioWriter::finish()
{
    return m_implementation->finish();
}

AudioWriter::Status AudioWriter::status() const
{
    return m_implementation->status();
}

QString AudioWriter::errorDescription() const
{
    return m_implementation->errorDescription();
}

} // namespace sorvanta
