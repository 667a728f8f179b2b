#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace sorvanta {

/// Reads one JSON document piece by piece, strictly but for one thing: a comma may stand behind the last member or
/// element. The caller asks what comes with nextKind() and reads just that; readEnd() comes last. Text that is not
/// JSON, and nesting deeper than 512 levels, are thrown as an Error with the code 4864.
class JsonReader {
public:
    enum class Kind { Object, Array, String, Number, Boolean, Null };

    /// @param document in one of the encodings of utf8JsonDocument()
    explicit JsonReader(const QByteArray &document);
    JsonReader(const JsonReader &) = delete;
    JsonReader &operator=(const JsonReader &) = delete;

    Kind nextKind();

    /// Calls `member(QByteArrayView key)` for each member in order, which must read its value or skip it. The key is
    /// UTF-8 and stands until the value is read; one that cannot be decoded comes as it is spelled.
    template<typename Member>
    void readObject(Member member)
    {
        begin('{');
        while (!ends('}')) {
            member(readKey());
            readSeparator('}');
        }
        end();
    }

    /// Calls `element()` for each element in order, which must read it or skip it.
    template<typename Element>
    void readArray(Element element)
    {
        begin('[');
        while (!ends(']')) {
            element();
            readSeparator(']');
        }
        end();
    }

    /// None if the string is no text: bytes that are not UTF-8, or an escaped surrogate without its other half.
    std::optional<QString> readString();
    bool readBoolean();
    /// Skips any value. Its strings are not decoded.
    void skipValue();
    /// Makes sure that nothing but white space is left.
    void readEnd();

private:
    struct RawString {
        QByteArrayView bytes; // between the quotes
        bool hasEscapes = false;
        bool isAscii = true;
    };

    static std::optional<QString> decoded(const RawString &raw);
    char peek();
    void skipWhiteSpace();
    void begin(char bracket);
    bool ends(char bracket);
    void end();
    void readSeparator(char bracket);
    QByteArrayView readKey();
    RawString readRawString();
    void skipPlainCharacters(RawString &raw);
    void skipEscape();
    void skipDigits();
    void skipNumber();
    void skipWord(QByteArrayView word);

    QByteArray m_document;
    const char *m_position; // a zero stands at the end
    const char *m_end;
    int m_depth = 0;
    QByteArray m_key;
};

} // namespace sorvanta
