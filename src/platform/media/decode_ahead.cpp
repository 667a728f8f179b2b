#include "platform/media/decode_ahead.h"

#include "platform/named_thread.h"

namespace sorvanta {

DecodeAhead::Batch::Batch()
{
    for (ffmpeg::Pointer<AVFrame> &frame : frames)
        frame.reset(ffmpeg::checked(av_frame_alloc()));
}

DecodeAhead::DecodeAhead(AudioDecoder &decoder)
    : m_decoder(decoder)
{
    try {
        m_thread = std::jthread([this] { run(); });
    } catch (const std::system_error &failure) {
        throw threadError(failure);
    }
}

DecodeAhead::~DecodeAhead()
{
    m_isStopping = true;
    m_empty.release();
}

const AVFrame *DecodeAhead::next()
{
    if (!m_batch) {
        m_filled.acquire();
        m_batch = &m_batches[m_batchNumber++ % batchCount];
        m_frameNumber = 0;
    }
    if (m_frameNumber < m_batch->size)
        return m_batch->frames[m_frameNumber++].get();
    if (m_batch->failure)
        std::rethrow_exception(m_batch->failure);
    if (m_batch->isLast)
        return nullptr;
    m_batch = nullptr;
    m_empty.release();
    return next();
}

void DecodeAhead::run()
{
    for (std::size_t number = 0;; ++number) {
        m_empty.acquire();
        if (m_isStopping)
            return;
        Batch &batch = m_batches[number % batchCount];
        fill(batch);
        const bool isLast = batch.isLast;
        m_filled.release();
        if (isLast)
            return;
    }
}

void DecodeAhead::fill(Batch &batch)
{
    batch.size = 0;
    try {
        int samples = 0;
        while (batch.size < Batch::mostFrames && samples < Batch::mostSamples && !batch.isLast) {
            AVFrame *frame = batch.frames[batch.size].get();
            if (m_decoder.next(frame)) {
                samples += frame->nb_samples;
                ++batch.size;
            } else {
                batch.isLast = true;
            }
        }
    } catch (...) {
        batch.failure = std::current_exception();
        batch.isLast = true;
    }
}

} // namespace sorvanta
