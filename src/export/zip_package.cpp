#include "export/zip_package.h"

#include "platform/error.h"

#include <memory>

#include <zip.h>

namespace sorvanta {

namespace {

Error packageError(const char *reason)
{
    return {u"Export"_qs, 0, u"The document couldn’t be packed: %1."_qs.arg(QString::fromUtf8(reason))};
}

/// A zip archive in memory. What it is given must live until it is packed.
class Archive {
public:
    Archive()
        : m_buffer(zip_source_buffer_create(nullptr, 0, 0, nullptr))
    {
        if (!m_buffer)
            throw packageError("there is not enough memory");
        zip_error_t error;
        zip_error_init(&error);
        m_archive.reset(zip_open_from_source(m_buffer.get(), ZIP_TRUNCATE, &error));
        const Error failure = packageError(zip_error_strerror(&error));
        zip_error_fini(&error);
        if (!m_archive)
            throw failure;
        // The archive takes one reference with it, this object keeps another.
        zip_source_keep(m_buffer.get());
    }

    void add(const ZipPart &part)
    {
        zip_source_t *source =
            zip_source_buffer(m_archive.get(), part.bytes.data(), static_cast<zip_uint64_t>(part.bytes.size()), 0);
        if (!source)
            throw packageError(zip_strerror(m_archive.get()));
        const zip_int64_t index = zip_file_add(m_archive.get(), part.name, source, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            throw packageError(zip_strerror(m_archive.get()));
        }
        // The first moment that the format knows, so that equal texts give equal files.
        constexpr zip_uint16_t firstDay = (1 << 5) | 1;
        zip_file_set_dostime(m_archive.get(), static_cast<zip_uint64_t>(index), 0, firstDay, 0);
    }

    QByteArray packed()
    {
        if (zip_close(m_archive.get()) != 0)
            throw packageError(zip_strerror(m_archive.get()));
        static_cast<void>(m_archive.release());
        zip_stat_t status;
        if (zip_source_stat(m_buffer.get(), &status) != 0 || zip_source_open(m_buffer.get()) != 0)
            throw packageError(zip_error_strerror(zip_source_error(m_buffer.get())));
        QByteArray bytes(static_cast<qsizetype>(status.size), Qt::Uninitialized);
        const zip_int64_t count = zip_source_read(m_buffer.get(), bytes.data(), status.size);
        zip_source_close(m_buffer.get());
        if (count != static_cast<zip_int64_t>(status.size))
            throw packageError(zip_error_strerror(zip_source_error(m_buffer.get())));
        return bytes;
    }

private:
    struct Discard {
        void operator()(zip_t *archive) const { zip_discard(archive); }
        void operator()(zip_source_t *source) const { zip_source_free(source); }
    };

    std::unique_ptr<zip_source_t, Discard> m_buffer;
    std::unique_ptr<zip_t, Discard> m_archive;
};

} // namespace

QByteArray zipPackage(std::initializer_list<ZipPart> parts)
{
    Archive archive;
    for (const ZipPart &part : parts)
        archive.add(part);
    return archive.packed();
}

} // namespace sorvanta
