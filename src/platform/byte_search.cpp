#include "platform/byte_search.h"

#include <algorithm>
#include <cstring>

namespace sorvanta {

namespace {

constexpr qsizetype blockSize = 64;

/// The first two bytes of what is wanted and the last two: of a text beyond ASCII, the first byte alone tells little.
class Ends {
public:
    explicit Ends(QByteArrayView wanted)
        : m_bytes{wanted[0], wanted[1], wanted[wanted.size() - 2], wanted[wanted.size() - 1]}
        , m_lastTwo(wanted.size() - 2)
    {
    }

    bool standAt(const char *place) const { return differencesAt(place) == 0; }

    /// Whether they stand at one of the places of a block. Written so that the compiler looks at the places at once.
    bool standInBlock(const char *block) const
    {
        unsigned char found = 0;
        for (qsizetype i = 0; i < blockSize; ++i)
            found |= static_cast<unsigned char>(differencesAt(block + i) == 0);
        return found != 0;
    }

private:
    unsigned char differencesAt(const char *place) const
    {
        return static_cast<unsigned char>((place[0] ^ m_bytes[0]) | (place[1] ^ m_bytes[1])
                                          | (place[m_lastTwo] ^ m_bytes[2]) | (place[m_lastTwo + 1] ^ m_bytes[3]));
    }

    char m_bytes[4];
    qsizetype m_lastTwo;
};

const char *foundInRest(const char *place, const char *end, QByteArrayView wanted)
{
    if (place == end) // perhaps of a text that has no place at all
        return nullptr;
    return static_cast<const char *>(
        ::memmem(place, static_cast<std::size_t>(end - place), wanted.data(), static_cast<std::size_t>(wanted.size())));
}

const char *foundByEnds(const char *place, const char *end, QByteArrayView wanted)
{
    const Ends ends(wanted);
    for (; end - place >= blockSize + wanted.size() - 1; place += blockSize) {
        if (!ends.standInBlock(place))
            continue;
        for (qsizetype i = 0; i < blockSize; ++i) {
            if (ends.standAt(place + i) && std::equal(wanted.begin(), wanted.end(), place + i))
                return place + i;
        }
    }
    return foundInRest(place, end, wanted);
}

} // namespace

qsizetype indexOfBytes(QByteArrayView text, QByteArrayView wanted, qsizetype from)
{
    const char *const begin = text.data() + from;
    const char *const end = text.data() + text.size();
    const char *const found = wanted.size() < 2 ? foundInRest(begin, end, wanted) : foundByEnds(begin, end, wanted);
    return found ? found - text.data() : -1;
}

} // namespace sorvanta
