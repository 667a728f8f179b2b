#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace sorvanta {

/// The converted files of a screen's present run or batch: a screen holds one as a member. Copies share one list,
/// which belongs to the main thread; another thread may only hold a copy and post work with it. What is left when the
/// last copy goes is removed.
class TemporaryFiles {
public:
    TemporaryFiles();

    /// Notes a file that has just been made.
    void record(const QString &path);

    /// Notes the files of `other`, which forgets them.
    void takeOver(TemporaryFiles &other);

    /// The file of the present run: the one recorded last, or none.
    std::optional<QString> tempConvertedURL() const;
    /// The files of the present batch, in the order in which they were made.
    QStringList tempConvertedURLs() const;

    /// Removes all files noted, ignoring a failure, and forgets them.
    void removeTemporaries();

private:
    struct Paths;
    std::shared_ptr<Paths> m_paths;
};

} // namespace sorvanta
