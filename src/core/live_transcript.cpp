#include "core/live_transcript.h"

#include "core/transcript_text.h"
#include "platform/unicode_text.h"

#include <algorithm>

namespace sorvanta {

namespace {

/// Whether `word` ends behind `from` in `line`: a word that ends before was seen earlier.
bool containsFrom(QStringView line, qsizetype from, QStringView word)
{
    return line.indexOf(word, std::max<qsizetype>(0, from - word.size() + 1)) >= 0;
}

} // namespace

LiveTranscript::Change LiveTranscript::append(QStringView piece)
{
    const qsizetype oldCount = lineCount();
    const bool wasTimed = isTimed();
    const auto oldFinished = finishedLines().size();
    const std::optional<Span> oldUnfinished = unfinishedLine();

    const qsizetype oldSize = m_rawOutput.size();
    m_rawOutput += piece;
    for (qsizetype i = oldSize; i < m_rawOutput.size(); ++i) {
        if (isNewline(m_rawOutput[i].unicode())) {
            scan(m_unfinished, i);
            commit(m_unfinished);
            m_unfinished = LineScan{.start = i + 1, .end = i + 1};
        }
    }
    scan(m_unfinished, m_rawOutput.size());
    m_tail = read(m_unfinished);

    if (wasTimed != isTimed())
        return {.first = 0, .removed = oldCount, .added = lineCount()};

    // Finished lines stay, so only what was unfinished before and what came behind it can differ.
    const auto &lines = finishedLines();
    const bool isUnfinishedKept = oldUnfinished && oldFinished < lines.size() && lines[oldFinished] == *oldUnfinished;
    const auto first = static_cast<qsizetype>(isUnfinishedKept ? oldFinished + 1 : oldFinished);
    return {.first = first, .removed = oldCount - first, .added = lineCount() - first};
}

void LiveTranscript::clear()
{
    *this = LiveTranscript();
}

qsizetype LiveTranscript::lineCount() const
{
    return static_cast<qsizetype>(finishedLines().size()) + (unfinishedLine() ? 1 : 0);
}

QStringView LiveTranscript::line(qsizetype index) const
{
    const auto &lines = finishedLines();
    const auto position = static_cast<std::size_t>(index);
    const Span span = position < lines.size() ? lines[position] : unfinishedLine().value_or(Span{0, 0});
    return QStringView(m_rawOutput).sliced(span.start, span.length);
}

QString LiveTranscript::transcript() const
{
    const qsizetype count = lineCount();
    qsizetype size = std::max<qsizetype>(0, count - 1);
    for (qsizetype i = 0; i < count; ++i)
        size += line(i).size();
    QString text;
    text.reserve(size);
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0)
            text += u'\n';
        text += line(i);
    }
    return text;
}

void LiveTranscript::scan(LineScan &line, qsizetype end) const
{
    const QStringView text = QStringView(m_rawOutput).sliced(line.start, end - line.start);
    const qsizetype from = line.end - line.start;
    for (qsizetype i = from; i < text.size() && line.firstInk < 0; ++i) {
        if (!isWhitespace(text[i].unicode()))
            line.firstInk = line.start + i;
    }
    for (qsizetype i = text.size() - 1; i >= from; --i) {
        if (!isWhitespace(text[i].unicode())) {
            line.lastInk = line.start + i;
            break;
        }
    }
    if (line.closingBracket < 0) {
        const qsizetype bracket = text.indexOf(u']', from);
        line.closingBracket = bracket < 0 ? -1 : line.start + bracket;
    }
    if (line.closingBracket >= 0 && line.inkBehindBracket < 0 && line.lastInk > line.closingBracket) {
        line.inkBehindBracket = std::max(line.start + from, line.closingBracket + 1);
        while (isWhitespace(m_rawOutput[line.inkBehindBracket].unicode()))
            ++line.inkBehindBracket;
    }
    line.isEngineTiming = line.isEngineTiming || containsFrom(text, from, engineTimingWord);
    line.isLog = line.isLog || std::any_of(logWords.begin(), logWords.end(), [text, from](QStringView word) {
                     return containsFrom(text, from, word);
                 });
    line.end = end;
}

LiveTranscript::Reading LiveTranscript::read(const LineScan &line) const
{
    Reading reading{.timed = {}, .plain = {}, .block = m_block};
    if (line.isEngineTiming || line.firstInk < 0)
        return reading;
    const Span trimmed{line.firstInk, line.lastInk + 1 - line.firstInk};
    const QStringView text = QStringView(m_rawOutput).sliced(trimmed.start, trimmed.length);

    if (m_block != Block::ended) {
        if (text.startsWith(u'[')) {
            reading.block = Block::open;
            if (line.closingBracket < 0) {
                reading.timed = Span{line.start, line.end - line.start};
            } else if (line.inkBehindBracket >= 0) {
                reading.timed = Span{line.inkBehindBracket, line.lastInk + 1 - line.inkBehindBracket};
            }
        } else if (m_block == Block::open) {
            reading.block = Block::ended;
        }
    }
    if (m_timed.empty() && !line.isLog && !beginsLikeLog(text))
        reading.plain = trimmed;
    return reading;
}

void LiveTranscript::commit(const LineScan &line)
{
    const Reading reading = read(line);
    m_block = reading.block;
    if (reading.timed) {
        m_timed.push_back(*reading.timed);
        m_plain = {};
    } else if (reading.plain) {
        m_plain.push_back(*reading.plain);
    }
}

} // namespace sorvanta
