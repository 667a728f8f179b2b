#include "independent_readers.h"

#include "platform/media/ffmpeg.h"
#include "platform/unicode_text.h"

#include <cmark.h>
#include <csv.h>
#include <gumbo.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>

namespace sorvanta::readers {

namespace {

void require(bool condition, const char *what)
{
    if (!condition)
        throw std::runtime_error(what);
}

QString decoded(QByteArrayView bytes)
{
    const auto text = decodeUtf8(bytes);
    require(text.has_value(), "no UTF-8");
    return *text;
}

/// A segment of "[start -> end]" and the blank and text behind it.
TranscriptSegment segmentOf(const QString &times, const QString &rest)
{
    const QStringList ends = times.sliced(1, times.size() - 2).split(" -> ");
    require(times.startsWith('[') && times.endsWith(']') && ends.size() == 2, "times are of another form");
    require(rest.startsWith(' '), "no blank behind the times");
    return {ends[0], ends[1], rest.sliced(1)};
}

// Subtitles

class SubtitleFile {
public:
    SubtitleFile(const QByteArray &file, const char *format)
        : m_bytes(file)
    {
        ffmpeg::prepareLibraries();
        constexpr int bufferSize = 4096;
        auto *buffer = static_cast<unsigned char *>(av_malloc(bufferSize));
        m_source.reset(ffmpeg::checked(avio_alloc_context(buffer, bufferSize, 0, this, read, nullptr, nullptr)));
        AVFormatContext *context = ffmpeg::checked(avformat_alloc_context());
        context->pb = m_source.get();
        ffmpeg::checked(avformat_open_input(&context, nullptr, av_find_input_format(format), nullptr));
        m_context.reset(context);
        require(context->nb_streams == 1, "no single stream of subtitles");
        require(av_cmp_q(stream().time_base, {1, 1000}) == 0, "times are not in milliseconds");
    }

    AVStream &stream() { return **m_context->streams; }

    /// Calls `visit(AVPacket &)` for each event.
    template<typename Visitor>
    void forEachEvent(Visitor visit)
    {
        const ffmpeg::Pointer<AVPacket> packet(ffmpeg::checked(av_packet_alloc()));
        while (av_read_frame(m_context.get(), packet.get()) >= 0) {
            visit(*packet);
            av_packet_unref(packet.get());
        }
    }

private:
    static int read(void *self, uint8_t *buffer, int size)
    {
        auto *file = static_cast<SubtitleFile *>(self);
        const QByteArrayView piece = QByteArrayView(file->m_bytes).sliced(file->m_position);
        const qsizetype count = std::min<qsizetype>(piece.size(), size);
        if (count == 0)
            return AVERROR_EOF;
        std::copy_n(piece.data(), count, buffer);
        file->m_position += count;
        return static_cast<int>(count);
    }

    struct Closer {
        void operator()(AVFormatContext *context) const { avformat_close_input(&context); }
    };

    QByteArray m_bytes;
    qsizetype m_position = 0;
    ffmpeg::Pointer<AVIOContext> m_source;
    std::unique_ptr<AVFormatContext, Closer> m_context;
};

QString timecode(int64_t milliseconds)
{
    return QString::asprintf("%02d:%02d:%02d.%03d", static_cast<int>(milliseconds / 3'600'000),
                             static_cast<int>(milliseconds / 60'000 % 60), static_cast<int>(milliseconds / 1000 % 60),
                             static_cast<int>(milliseconds % 1000));
}

// CSV

struct CsvRows {
    QList<QStringList> rows;
    QStringList row;
};

void takeField(void *bytes, size_t size, void *result)
{
    static_cast<CsvRows *>(result)->row << decoded(
        QByteArrayView(static_cast<char *>(bytes), static_cast<qsizetype>(size)));
}

void takeRow(int, void *result)
{
    auto *rows = static_cast<CsvRows *>(result);
    rows->rows << std::exchange(rows->row, {});
}

// HTML

std::span<GumboNode *const> children(const GumboNode &node)
{
    const GumboVector &vector = node.v.element.children;
    return {reinterpret_cast<GumboNode *const *>(vector.data), vector.length};
}

bool isElement(const GumboNode &node, GumboTag tag)
{
    return node.type == GUMBO_NODE_ELEMENT && node.v.element.tag == tag;
}

const GumboNode &onlyChild(const GumboNode &node, GumboTag tag)
{
    const GumboNode *found = nullptr;
    for (const GumboNode *child : children(node)) {
        if (isElement(*child, tag)) {
            require(!found, "an element comes twice");
            found = child;
        }
    }
    require(found, "an element is missing");
    return *found;
}

/// The text of a node that holds text and breaks only.
QString textOf(const GumboNode &node)
{
    if (node.type == GUMBO_NODE_TEXT || node.type == GUMBO_NODE_WHITESPACE)
        return decoded(node.v.text.text);
    if (isElement(node, GUMBO_TAG_BR))
        return u"\n"_qs;
    require(false, "something else than text");
    return {};
}

QString textOf(std::span<GumboNode *const> nodes)
{
    QString text;
    for (const GumboNode *node : nodes)
        text += textOf(*node);
    return text;
}

// Markdown

struct NodeDeleter {
    void operator()(cmark_node *node) const { cmark_node_free(node); }
};

/// All words under a node, whatever type they are set in.
QString textUnder(cmark_node *node)
{
    QString text = decoded(cmark_node_get_literal(node));
    for (cmark_node *child = cmark_node_first_child(node); child; child = cmark_node_next(child))
        text += textUnder(child);
    return text;
}

} // namespace

QList<TranscriptSegment> subtitles(const QByteArray &file, const char *format)
{
    QList<TranscriptSegment> segments;
    SubtitleFile(file, format).forEachEvent([&segments](const AVPacket &event) {
        const QByteArrayView text(reinterpret_cast<const char *>(event.data), event.size);
        segments.append({timecode(event.pts), timecode(event.pts + event.duration), decoded(text)});
    });
    return segments;
}

QStringList shownSubtitles(const QByteArray &file, const char *format)
{
    SubtitleFile subtitles(file, format);
    const AVCodecParameters &parameters = *subtitles.stream().codecpar;
    const AVCodec *codec = ffmpeg::checked(avcodec_find_decoder(parameters.codec_id));
    const ffmpeg::Pointer<AVCodecContext> decoder(ffmpeg::checked(avcodec_alloc_context3(codec)));
    decoder->pkt_timebase = subtitles.stream().time_base;
    ffmpeg::checked(avcodec_open2(decoder.get(), codec, nullptr));
    QStringList texts;
    subtitles.forEachEvent([&](AVPacket &event) {
        AVSubtitle subtitle;
        int isThere = 0;
        ffmpeg::checked(avcodec_decode_subtitle2(decoder.get(), &subtitle, &isThere, &event));
        require(isThere != 0 && subtitle.num_rects == 1, "an event shows nothing");
        // ReadOrder, Layer, Style, Name, three margins and Effect stand before the words.
        texts << decoded(subtitle.rects[0]->ass).section(',', 8);
        avsubtitle_free(&subtitle);
    });
    return texts;
}

QList<QStringList> csvRows(const QByteArray &file)
{
    csv_parser parser;
    require(csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI) == 0, "no parser");
    CsvRows result;
    const size_t taken = csv_parse(&parser, file.data(), static_cast<size_t>(file.size()), takeField, takeRow, &result);
    const bool isGood =
        taken == static_cast<size_t>(file.size()) && csv_fini(&parser, takeField, takeRow, &result) == 0;
    csv_free(&parser);
    require(isGood, "a field is quoted badly");
    return result.rows;
}

ExportInput jsonTranscript(const QByteArray &file)
{
    const auto document = nlohmann::json::parse(file.begin(), file.end());
    const auto text = [](const nlohmann::json &object, const char *key) {
        return decoded(object.at(key).get_ref<const std::string &>());
    };
    ExportInput transcript{.text = text(document, "text"), .segments = {}};
    const auto segments = document.find("segments");
    require(document.size() == (segments == document.end() ? 1u : 2u), "unknown keys");
    if (segments == document.end())
        return transcript;
    require(segments->is_array() && !segments->empty(), "no segments in the list of segments");
    for (const nlohmann::json &segment : *segments) {
        require(segment.size() == 3, "unknown keys");
        transcript.segments.append({text(segment, "start"), text(segment, "end"), text(segment, "text")});
    }
    return transcript;
}

Page page(const QByteArray &file)
{
    const auto destroy = [](GumboOutput *output) { gumbo_destroy_output(&kGumboDefaultOptions, output); };
    const std::unique_ptr<GumboOutput, decltype(destroy)> output(
        gumbo_parse_with_options(&kGumboDefaultOptions, file.data(), static_cast<size_t>(file.size())), destroy);
    require(output->document->v.document.has_doctype
                && output->document->v.document.doc_type_quirks_mode == GUMBO_DOCTYPE_NO_QUIRKS,
            "an old kind of document");
    const GumboNode &head = onlyChild(*output->root, GUMBO_TAG_HEAD);
    const GumboAttribute *encoding =
        gumbo_get_attribute(&onlyChild(head, GUMBO_TAG_META).v.element.attributes, "charset");
    require(encoding, "no encoding");
    Page page;
    page.title = textOf(children(onlyChild(head, GUMBO_TAG_TITLE)));
    page.encoding = decoded(encoding->value);
    for (const GumboNode *node : children(onlyChild(*output->root, GUMBO_TAG_BODY))) {
        if (node->type == GUMBO_NODE_WHITESPACE)
            continue;
        require(isElement(*node, GUMBO_TAG_P), "something else than a paragraph");
        const auto parts = children(*node);
        if (!parts.empty() && isElement(*parts.front(), GUMBO_TAG_STRONG))
            page.segments << segmentOf(textOf(children(*parts.front())), textOf(parts.subspan(1)));
        else
            page.paragraphs << textOf(parts);
    }
    return page;
}

QList<TranscriptSegment> markdownSegments(const QByteArray &file)
{
    const std::unique_ptr<cmark_node, NodeDeleter> document(
        cmark_parse_document(file.data(), static_cast<size_t>(file.size()), CMARK_OPT_DEFAULT));
    QList<TranscriptSegment> segments;
    for (cmark_node *block = cmark_node_first_child(document.get()); block; block = cmark_node_next(block)) {
        require(cmark_node_get_type(block) == CMARK_NODE_PARAGRAPH, "something else than a paragraph");
        cmark_node *times = cmark_node_first_child(block);
        require(cmark_node_get_type(times) == CMARK_NODE_STRONG, "no times in bold type");
        QString rest;
        for (cmark_node *part = cmark_node_next(times); part; part = cmark_node_next(part))
            rest += textUnder(part);
        segments << segmentOf(textUnder(times), rest);
    }
    return segments;
}

} // namespace sorvanta::readers
