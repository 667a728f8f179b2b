#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace sorvanta {

/// The panels in which a user picks files. A test replaces them. Main thread only.
class FilePanels {
public:
    /// Which files an open panel offers.
    struct OpenRequest {
        QString kind; ///< what the files are called, for example "Audio and video"
        QStringList extensions; ///< in lower case, without points; the panel takes them in any case
    };
    /// What a save panel proposes.
    struct SaveRequest {
        QString name; ///< with its extension
        /// In lower case, without points; the first one is appended to a name that the user gave none.
        QStringList extensions;
    };
    /// Is given the path that was chosen, or none if the panel was declined.
    using OnChosen = std::function<void(const std::optional<QString> &path)>;
    /// Is given the paths that were chosen, none if the panel was declined.
    using OnFilesChosen = std::function<void(const QStringList &paths)>;

    FilePanels() = default;
    FilePanels(const FilePanels &) = delete;
    FilePanels &operator=(const FilePanels &) = delete;
    virtual ~FilePanels() = default;

    /// Shows a panel for one file that exists. Returns at once; what goes on in the application goes on behind it.
    virtual void openFile(const OpenRequest &request, OnChosen onChosen) = 0;

    /// Shows a panel for any number of files that exist, as openFile() does.
    virtual void openFiles(const OpenRequest &request, OnFilesChosen onChosen) = 0;

    /// Shows a panel for a place and a name, as openFile() does. Folders can be made in it. Whether a file that is
    /// there may be replaced is asked by the panel itself.
    virtual void saveFile(const SaveRequest &request, OnChosen onChosen) = 0;

    /// Shows a panel for one folder, as openFile() does. Folders can be made in it.
    /// @param prompt what the button says that accepts the choice
    virtual void chooseFolder(const QString &prompt, OnChosen onChosen) = 0;
};

/// The panels of the desktop, or Qt's own where it has none.
class SystemFilePanels : public FilePanels {
public:
    void openFile(const OpenRequest &request, OnChosen onChosen) override;
    void openFiles(const OpenRequest &request, OnFilesChosen onChosen) override;
    void saveFile(const SaveRequest &request, OnChosen onChosen) override;
    void chooseFolder(const QString &prompt, OnChosen onChosen) override;
};

} // namespace sorvanta
