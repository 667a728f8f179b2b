#include "history/history_json.h"

#include "platform/file_errors.h"
#include "platform/iso8601.h"
#include "platform/json_reader.h"
#include "platform/json_writer.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace sorvanta {

namespace {

using Entry = TranscriptionHistoryEntry;
using Kind = JsonReader::Kind;

template<auto Member>
bool readText(JsonReader &reader, Entry &entry)
{
    std::optional<QString> text = reader.readString();
    if (!text)
        return false;
    entry.*Member = *std::move(text);
    return true;
}

bool readDiarization(JsonReader &reader, Entry &entry)
{
    entry.diarization = reader.readBoolean();
    return true;
}

struct Field {
    QByteArrayView key;
    Kind kind;
    bool isRequired;
    /// @return false if the value is of the right kind but cannot be decoded
    bool (*read)(JsonReader &reader, Entry &entry);
};

/// In the order in which they are judged.
constexpr auto fields = std::to_array<Field>({
    {"id", Kind::String, true, readText<&Entry::id>},
    {"text", Kind::String, true, readText<&Entry::text>},
    {"sourceLabel", Kind::String, true, readText<&Entry::sourceLabel>},
    {"model", Kind::String, true, readText<&Entry::model>},
    {"language", Kind::String, true, readText<&Entry::language>},
    {"diarization", Kind::Boolean, true, readDiarization},
    {"txtPath", Kind::String, true, readText<&Entry::txtPath>},
    {"srtPath", Kind::String, false, readText<&Entry::srtPath>},
    {"recordingPath", Kind::String, false, readText<&Entry::recordingPath>},
    {"createdAt", Kind::String, true, readText<&Entry::createdAt>},
});

enum class Found { Nothing, Null, Unfit, Value };

Found readField(JsonReader &reader, const Field &field, Entry &entry)
{
    const Kind kind = reader.nextKind();
    if (kind == field.kind)
        return field.read(reader, entry) ? Found::Value : Found::Unfit;
    reader.skipValue();
    return kind == Kind::Null ? Found::Null : Found::Unfit;
}

Entry readEntry(JsonReader &reader)
{
    const Kind kind = reader.nextKind();
    if (kind != Kind::Object)
        throw kind == Kind::Null ? missingDataError() : incorrectFormatError();
    Entry entry;
    std::array<Found, fields.size()> found{};
    reader.readObject([&](QByteArrayView key) {
        const auto field = std::ranges::find(fields, key, &Field::key);
        const auto index = static_cast<std::size_t>(field - fields.begin());
        if (field == fields.end() || found[index] != Found::Nothing)
            reader.skipValue();
        else
            found[index] = readField(reader, *field, entry);
    });
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (found[i] == Found::Unfit)
            throw incorrectFormatError();
        if (found[i] != Found::Value && fields[i].isRequired)
            throw missingDataError();
    }
    return entry;
}

QList<Entry> readEntries(JsonReader &reader)
{
    const Kind kind = reader.nextKind();
    if (kind != Kind::Array)
        throw kind == Kind::Null ? missingDataError() : incorrectFormatError();
    QList<Entry> entries;
    reader.readArray([&] { entries.append(readEntry(reader)); });
    reader.readEnd();
    return entries;
}

void checkSyntax(const QByteArray &document)
{
    JsonReader reader(document);
    reader.skipValue();
    reader.readEnd();
}

void writeText(JsonWriter &writer, QStringView key, const QString &text)
{
    writer.key(key);
    writer.string(text);
}

void writeText(JsonWriter &writer, QStringView key, const std::optional<QString> &text)
{
    if (text)
        writeText(writer, key, *text);
}

void writeEntry(JsonWriter &writer, const Entry &entry)
{
    writer.beginObject();
    writeText(writer, u"createdAt", entry.createdAt);
    writer.key(u"diarization");
    writer.boolean(entry.diarization);
    writeText(writer, u"id", entry.id);
    writeText(writer, u"language", entry.language);
    writeText(writer, u"model", entry.model);
    writeText(writer, u"recordingPath", entry.recordingPath);
    writeText(writer, u"sourceLabel", entry.sourceLabel);
    writeText(writer, u"srtPath", entry.srtPath);
    writeText(writer, u"text", entry.text);
    writeText(writer, u"txtPath", entry.txtPath);
    writer.endObject();
}

/// What is collected before it is given away.
constexpr qsizetype pieceSize = 1 << 18;

} // namespace

void encodeHistory(const QList<Entry> &entries, const std::function<void(QByteArrayView)> &sink)
{
    JsonWriter writer(JsonWriter::Layout::Pretty, JsonWriter::Slashes::Plain);
    writer.beginArray();
    for (const Entry &entry : entries) {
        writeEntry(writer, entry);
        if (writer.size() >= pieceSize)
            writer.drain(sink);
    }
    writer.endArray();
    writer.drain(sink);
}

QByteArray encodedHistory(const QList<Entry> &entries)
{
    QByteArray document;
    encodeHistory(entries, [&document](QByteArrayView bytes) { document += bytes; });
    return document;
}

QByteArray encodedBeforeOthers(const Entry &entry)
{
    QByteArray document = encodedHistory({entry});
    constexpr QByteArrayView end = "\n]";
    document.chop(end.size());
    return document + ",\n";
}

QList<Entry> decodedHistory(const QByteArray &document)
{
    JsonReader reader(document);
    try {
        return readEntries(reader);
    } catch (const Error &) {
        // A document that is no JSON further down is first of all that.
        checkSyntax(document);
        throw;
    }
}

void sortNewestFirst(QList<Entry> &entries)
{
    struct Dated {
        qint64 milliseconds;
        qsizetype index;
    };
    constexpr qint64 distantPast = std::numeric_limits<qint64>::min();
    const auto isNewer = [](const Dated &a, const Dated &b) { return a.milliseconds > b.milliseconds; };

    std::vector<Dated> order;
    order.reserve(static_cast<std::size_t>(entries.size()));
    for (qsizetype i = 0; i < entries.size(); ++i) // a list that is shared and in order stays shared
        order.push_back({iso8601Milliseconds(std::as_const(entries)[i].createdAt).value_or(distantPast), i});
    if (std::ranges::is_sorted(order, isNewer))
        return;
    std::ranges::stable_sort(order, isNewer);
    QList<Entry> sorted;
    sorted.reserve(entries.size());
    for (const Dated &dated : order)
        sorted.append(std::move(entries[dated.index]));
    entries = std::move(sorted);
}

} // namespace sorvanta
