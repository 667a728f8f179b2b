#include "core/temporary_files.h"

#include <QFile>

#include <utility>

namespace sorvanta {

struct TemporaryFiles::Paths {
    Paths() = default;
    Paths(const Paths &) = delete;
    Paths &operator=(const Paths &) = delete;
    ~Paths() { remove(); }

    void remove()
    {
        for (const QString &path : list)
            QFile::remove(path);
        list.clear();
    }

    QStringList list;
};

TemporaryFiles::TemporaryFiles()
    : m_paths(std::make_shared<Paths>())
{
}

void TemporaryFiles::record(const QString &path)
{
    m_paths->list.append(path);
}

void TemporaryFiles::takeOver(TemporaryFiles &other)
{
    m_paths->list.append(std::exchange(other.m_paths->list, {}));
}

std::optional<QString> TemporaryFiles::tempConvertedURL() const
{
    if (m_paths->list.isEmpty())
        return std::nullopt;
    return m_paths->list.last();
}

QStringList TemporaryFiles::tempConvertedURLs() const
{
    return m_paths->list;
}

void TemporaryFiles::removeTemporaries()
{
    m_paths->remove();
}

} // namespace sorvanta
