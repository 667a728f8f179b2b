#pragma once

#include <QString>
#include <QStringView>

#include <optional>
#include <vector>

namespace sorvanta {

/// The engine's output of a run while it grows, and the lines of transcript in it.
///
/// After each append() the lines are those of cleanWhisperOutput() over the whole output so far, but the work done is
/// that of the piece, whatever came before: finished lines are not looked at again, and the last, unfinished one is
/// read on from where it stood. Lines are views into the output, so a long transcript is held in memory once. (Where
/// plain lines give way to the first timed text, or come back when that turns out to be none, all lines change.)
class LiveTranscript {
public:
    /// Which lines an append() changed: `removed` lines from `first` on gave place to `added` ones.
    struct Change {
        qsizetype first = 0;
        qsizetype removed = 0;
        qsizetype added = 0;
    };

    /// Takes the next piece of output, of any size.
    Change append(QStringView piece);

    /// Forgets everything.
    void clear();

    /// The whole output so far.
    const QString &rawOutput() const { return m_rawOutput; }

    /// Where the last, unfinished line of the output begins.
    qsizetype unfinishedLineStart() const { return m_unfinished.start; }

    qsizetype lineCount() const;

    /// A view that holds until the next append() or clear().
    QStringView line(qsizetype index) const;

    /// All lines, joined with line feeds: the cleaned transcript.
    QString transcript() const;

private:
    struct Span {
        qsizetype start;
        qsizetype length;

        bool operator==(const Span &) const = default;
    };

    /// What was seen so far of a line.
    struct LineScan {
        qsizetype start = 0;
        qsizetype end = 0; ///< how far it was read
        qsizetype firstInk = -1; ///< first and last character that is no white space, -1 for none
        qsizetype lastInk = -1;
        qsizetype closingBracket = -1; ///< the first one
        qsizetype inkBehindBracket = -1; ///< first character behind it that is no white space
        bool isEngineTiming = false; ///< has the word of a timing
        bool isLog = false; ///< has a word of the log
    };

    enum class Block { notBegun, open, ended };

    /// What a line brings, given the finished ones before it.
    struct Reading {
        std::optional<Span> timed;
        std::optional<Span> plain;
        Block block = Block::notBegun;
    };

    void scan(LineScan &line, qsizetype end) const;
    Reading read(const LineScan &line) const;
    void commit(const LineScan &line);
    bool isTimed() const { return !m_timed.empty() || m_tail.timed; }
    const std::vector<Span> &finishedLines() const { return isTimed() ? m_timed : m_plain; }
    const std::optional<Span> &unfinishedLine() const { return isTimed() ? m_tail.timed : m_tail.plain; }

    QString m_rawOutput;
    Block m_block = Block::notBegun;
    std::vector<Span> m_timed; // of finished lines
    std::vector<Span> m_plain; // of finished lines; what is shown until the first timed text
    LineScan m_unfinished;
    Reading m_tail; // of the unfinished line
};

} // namespace sorvanta
