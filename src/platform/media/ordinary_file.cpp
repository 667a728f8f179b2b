#include "platform/media/ordinary_file.h"

#include "platform/file_errors.h"
#include "platform/file_system.h"
#include "platform/media/input_format.h"
#include "platform/media/output_file.h"
#include "platform/media/output_format.h"

#include <algorithm>

namespace sorvanta {

namespace {

void copyTrack(AVFormatContext &input, OutputFile &file)
{
    const OutputFormat output = newOutputFormat("ipod");
    output->flush_packets = 0;
    output->pb = file.context();
    const int track = ffmpeg::checked(av_find_best_stream(&input, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0));
    const AVStream &source = *input.streams[track];
    AVStream &copy = *ffmpeg::checked(avformat_new_stream(output.get(), nullptr));
    ffmpeg::checked(avcodec_parameters_copy(copy.codecpar, source.codecpar));
    copy.codecpar->codec_tag = 0;
    copy.time_base = source.time_base;
    AVDictionary *options = nullptr;
    av_dict_set_int(&options, "movie_timescale", source.codecpar->sample_rate, 0);
    const int headerResult = avformat_write_header(output.get(), &options);
    av_dict_free(&options);
    ffmpeg::checked(headerResult);
    const bool isEndKnown = source.start_time != AV_NOPTS_VALUE && source.duration > 0;
    const ffmpeg::Pointer<AVPacket> packet(ffmpeg::checked(av_packet_alloc()));
    for (int result = 0; (result = av_read_frame(&input, packet.get())) != AVERROR_EOF;) {
        ffmpeg::checked(result);
        if (packet->stream_index == track) {
            packet->stream_index = 0;
            packet->pos = -1;
            // The last packet ends with the track, and not when it is full.
            if (isEndKnown && packet->pts < source.start_time + source.duration)
                packet->duration = std::min(packet->duration, source.start_time + source.duration - packet->pts);
            av_packet_rescale_ts(packet.get(), source.time_base, copy.time_base);
            ffmpeg::checked(av_write_frame(output.get(), packet.get()));
        }
        av_packet_unref(packet.get());
    }
    ffmpeg::checked(av_write_trailer(output.get()));
    avio_flush(output->pb);
    ffmpeg::checked(output->pb->error);
}

} // namespace

void makeOrdinary(const QString &path)
{
    ffmpeg::prepareLibraries();
    const QString unfinished = path + QStringLiteral(".finishing");
    InputFile source(path, nullptr);
    const InputFormat input = openInputFormat(source, path, nullptr);
    OutputFile output(unfinished);
    const UnfinishedFile guard(encodedPath(unfinished));
    try {
        copyTrack(*input, output);
    } catch (const Error &) {
        if (source.systemError() != 0)
            throw readingError(path, source.systemError());
        if (output.systemError() != 0)
            throw writingError(path, output.systemError());
        throw;
    }
    output.flushToDisk();
    output.close();
    if (output.systemError() != 0)
        throw writingError(path, output.systemError());
    moveItem(unfinished, path);
}

} // namespace sorvanta
