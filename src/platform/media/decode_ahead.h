#pragma once

#include "platform/media/audio_decoder.h"

#include <array>
#include <exception>
#include <semaphore>
#include <thread>

namespace sorvanta {

/// Decodes on a thread of its own, a little ahead of whoever takes the frames, so that decoding and what is done with
/// the frames share two processors. As long as it exists, the decoder is its own.
class DecodeAhead {
public:
    /// @throws Error if the system has no thread to give
    explicit DecodeAhead(AudioDecoder &decoder);
    ~DecodeAhead();
    DecodeAhead(const DecodeAhead &) = delete;
    DecodeAhead &operator=(const DecodeAhead &) = delete;

    /// The next frame, valid until the next call; null at the end. Throws what the decoder has thrown.
    const AVFrame *next();

private:
    /// Frames change hands in batches, as waking a thread for each would cost as much as decoding it.
    struct Batch {
        Batch();
        static constexpr std::size_t mostFrames = 64;
        static constexpr int mostSamples = 65536;
        std::array<ffmpeg::Pointer<AVFrame>, mostFrames> frames;
        std::size_t size = 0;
        bool isLast = false;
        std::exception_ptr failure;
    };
    static constexpr std::size_t batchCount = 3;

    void run();
    void fill(Batch &batch);

    AudioDecoder &m_decoder;
    std::array<Batch, batchCount> m_batches;
    std::counting_semaphore<batchCount + 1> m_empty{batchCount};
    std::counting_semaphore<batchCount> m_filled{0};
    std::atomic<bool> m_isStopping = false;
    Batch *m_batch = nullptr; ///< the one that frames are taken from
    std::size_t m_batchNumber = 0;
    std::size_t m_frameNumber = 0;
    std::jthread m_thread; ///< last, as it uses all the others
};

} // namespace sorvanta
