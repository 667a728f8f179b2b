#pragma once

#include "platform/media/input_format.h"

#include <cstdint>
#include <optional>

namespace sorvanta {

/// The first audio track of a file as a stream of decoded frames without holes: where the track begins behind the
/// file's time zero, or leaves time out, frames of silence stand, so that times stay true, unless they are so long that
/// only damage explains them. All other tracks are skipped unread, damaged packets are passed over.
class AudioDecoder {
public:
    /// Opens the file and finds the track; nothing is decoded yet. Only this file is ever opened, whatever it refers
    /// to. See AudioReader.
    AudioDecoder(const QString &path, const std::atomic<bool> *interrupt);

    /// What the file says of the track; a frame that is decoded later may differ.
    int sampleRate() const { return m_stream->codecpar->sample_rate; }
    int channels() const { return m_stream->codecpar->ch_layout.nb_channels; }

    /// Makes ready for decoding. @throws Error if there is no decoder for the track
    void start();

    /// Puts the next frame into `frame`. @return false at the end or after a failure, and from then on
    bool next(AVFrame *frame);

    /// Whether next() ended because the file could not be read on, or because of the interruption.
    bool hasFailed() const { return m_input.systemError() != 0 || isInterrupted(); }
    int systemError() const { return m_input.systemError(); }

private:
    void selectTrack();
    bool isInterrupted() const { return m_interrupt && *m_interrupt; }
    bool decode(AVFrame *frame);
    void feed();
    bool readPacket();
    double missingSeconds(const AVFrame &frame) const;
    void makeSilence(AVFrame *silence);

    const std::atomic<bool> *m_interrupt;
    InputFile m_input;
    InputFormat m_format;
    AVStream *m_stream = nullptr;
    ffmpeg::Pointer<AVCodecContext> m_codec;
    ffmpeg::Pointer<AVPacket> m_packet;
    ffmpeg::Pointer<AVFrame> m_waiting; ///< the frame that comes behind the silence
    std::int64_t m_silentSamples = 0;
    double m_silence = 0; ///< seconds of silence put in so far
    double m_position = 0; ///< seconds handed out so far
    bool m_hasBegun = false;
};

} // namespace sorvanta
