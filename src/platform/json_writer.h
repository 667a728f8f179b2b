#pragma once

#include <QByteArray>
#include <QStringView>

#include <vector>

namespace sorvanta {

/// Writes one JSON document as UTF-8 without a byte order mark and without a line break behind it. The caller calls
/// in the order of the text: key() before each value of an object, and an end for each begin. Keys stand in the order
/// in which they come.
class JsonWriter {
public:
    enum class Layout {
        Compact, ///< no blanks at all
        Pretty ///< two blanks a level, a line for each member and element, a blank on both sides of a colon
    };
    enum class Slashes {
        Escaped, ///< written as \/
        Plain
    };

    JsonWriter(Layout layout, Slashes slashes);

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void key(QStringView name);
    /// A surrogate without its other half is written as U+FFFD.
    void string(QStringView text);
    void boolean(bool value);

    /// How many bytes have been written since the last drain().
    qsizetype size() const { return m_size; }
    /// Calls `sink(QByteArrayView)` with what has been written since the last time. A long document need not stand in
    /// memory as a whole.
    template<typename Sink>
    void drain(Sink sink)
    {
        sink(QByteArrayView(m_bytes).first(m_size));
        m_size = 0;
    }
    /// What drain() would give, as bytes of their own.
    QByteArray takeBytes();

private:
    void begin(char bracket);
    void end(char bracket);
    void beginValue();
    void newLine();
    void append(QByteArrayView bytes);
    void appendQuoted(QStringView text);
    char *room(qsizetype bytes);

    bool m_isPretty;
    bool m_escapesSlashes;
    QByteArray m_bytes; // only the first m_size bytes of it count
    qsizetype m_size = 0;
    std::vector<bool> m_isEmpty; // for each open bracket, the innermost last
    bool m_followsKey = false;
};

} // namespace sorvanta
