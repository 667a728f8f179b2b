#include "platform/media/wav_file.h"

#include "platform/file_errors.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <cerrno>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sorvanta {

namespace {

// The form of the file is that of EBU Tech 3306: a chunk of 28 bytes keeps the place of the sizes that 32 bits cannot
// hold; readers pass over it as long as it is called "JUNK".
constexpr qint64 wideSizesLength = 28;
constexpr qint64 headerSize = 12 + (8 + wideSizesLength) + (8 + 16) + 8;
constexpr quint32 tooLarge = std::numeric_limits<quint32>::max();

/// Puts numbers, little-endian, and names in a row.
class HeaderBytes {
public:
    void put(const char (&name)[5])
    {
        std::copy_n(name, 4, m_bytes.begin() + m_size);
        m_size += 4;
    }
    template<typename Number>
    void put(Number number)
    {
        qToLittleEndian(number, m_bytes.data() + m_size);
        m_size += static_cast<qsizetype>(sizeof number);
    }
    QByteArrayView view() const { return {m_bytes.data(), m_size}; }

private:
    std::array<char, headerSize> m_bytes{};
    qsizetype m_size = 0;
};

HeaderBytes header(const AudioFormat &format, qint64 dataSize)
{
    const qint64 riffSize = headerSize - 8 + dataSize;
    const bool isWide = riffSize >= tooLarge;
    const auto narrow = [isWide](qint64 size) { return isWide ? tooLarge : static_cast<quint32>(size); };
    HeaderBytes bytes;
    isWide ? bytes.put("RF64") : bytes.put("RIFF");
    bytes.put(narrow(riffSize));
    bytes.put("WAVE");
    isWide ? bytes.put("ds64") : bytes.put("JUNK");
    bytes.put(static_cast<quint32>(wideSizesLength));
    bytes.put(static_cast<quint64>(isWide ? riffSize : 0));
    bytes.put(static_cast<quint64>(isWide ? dataSize : 0));
    bytes.put(static_cast<quint64>(isWide ? dataSize / format.bytesPerFrame() : 0));
    bytes.put(static_cast<quint32>(0)); // no table of other chunks
    bytes.put("fmt ");
    bytes.put(static_cast<quint32>(16));
    bytes.put(static_cast<quint16>(1)); // PCM
    bytes.put(static_cast<quint16>(format.channels));
    bytes.put(static_cast<quint32>(format.sampleRate));
    bytes.put(static_cast<quint32>(format.sampleRate * format.bytesPerFrame()));
    bytes.put(static_cast<quint16>(format.bytesPerFrame()));
    bytes.put(static_cast<quint16>(16));
    bytes.put("data");
    bytes.put(narrow(dataSize));
    return bytes;
}

/// @return whether all bytes were written at `offset`
bool writeAllAt(int file, QByteArrayView bytes, qint64 offset)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::pwrite(file, bytes.data(), static_cast<std::size_t>(bytes.size()), offset);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes = bytes.sliced(count);
        offset += count;
    }
    return true;
}

} // namespace

WavFile::WavFile(QString path, const AudioFormat &format)
    : m_path(std::move(path))
    , m_format(format)
    , m_file(opened(encodedPath(m_path), O_RDWR | O_CREAT | O_EXCL, privateFileMode))
{
    if (!m_file.isOpen())
        throw writingError(m_path, errno);
    if (!writeAllAt(m_file.number(), header(m_format, 0).view(), 0)) {
        const int systemError = errno;
        QFile::remove(m_path);
        throw writingError(m_path, systemError);
    }
}

void WavFile::append(std::span<const std::byte> frames)
{
    if (m_hasFailed)
        return;
    const QByteArrayView bytes(reinterpret_cast<const char *>(frames.data()), static_cast<qsizetype>(frames.size()));
    const qint64 dataSize = m_dataSize + bytes.size();
    // The sizes follow the samples: they never promise what is not there.
    if (!writeAllAt(m_file.number(), bytes, headerSize + m_dataSize)
        || !writeAllAt(m_file.number(), header(m_format, dataSize).view(), 0)) {
        const int systemError = errno;
        m_hasFailed = true;
        [[maybe_unused]] const int isCut = ::ftruncate(m_file.number(), headerSize + m_dataSize);
        throw writingError(m_path, systemError);
    }
    m_dataSize = dataSize;
}

void WavFile::close()
{
    if (m_file.isOpen() && !m_file.close())
        throw writingError(m_path, errno);
}

} // namespace sorvanta
