#pragma once

#include "models/download_tracker.h"
#include "models/model_info.h"
#include "models/model_status.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <optional>
#include <utility>

namespace sorvanta {

/// Knows the speech models, which of them are on the disk, and which are being fetched. Main thread only.
///
/// A file of the right name in the models folder counts as downloaded, however it came there.
class ModelsSettingsViewModel : public QObject {
    Q_OBJECT
public:
    /// The one instance of the application, made at the first call and never released.
    static ModelsSettingsViewModel &shared();

    /// @param applicationSupportFolder where the models folder lies or is made; none if the system has no such folder
    explicit ModelsSettingsViewModel(std::optional<QString> applicationSupportFolder, QObject *parent = nullptr);

    const QList<ModelInfo> &availableModels() const { return modelCatalogue(); }

    Status status(const ModelInfo &model) const;

    /// Looks at the disk again. A file makes a model downloaded; without one a running download is left alone and
    /// everything else, a failure included, becomes not downloaded.
    void refreshStatuses();

    /// The models whose status is downloaded, with the paths of their files, in the catalogue's order.
    QList<std::pair<ModelInfo, QString>> downloadedModels() const;

    /// The path of the model's file, or none if no file is there.
    std::optional<QString> localURL(const ModelInfo &model) const;

    /// The folder of the model files, made if it is missing.
    /// @throws Error "ModelDownload" 0 if the system has no folder for it, or that of the failed making
    QString modelsDirectory() const;

    /// @throws Error "ModelDownload" 0 if there is none
    QString applicationSupportDirectory() const;

    /// Fetches the model's file; its status tells how that goes and ends. Does not ask whether it is being fetched
    /// already: the caller does. If it is, that download is given up, and the new one begins when it has ended.
    void startDownload(const ModelInfo &model);

    /// The downloads that run, or are about to, by model id.
    const QHash<QString, std::shared_ptr<DownloadTracker>> &activeDownloads() const { return m_activeDownloads; }

    /// Removes the model's file. A failure becomes the model's status.
    void deleteLocalCopy(const ModelInfo &model);

Q_SIGNALS:
    /// The status of a model changed.
    void statusMapChanged();

private:
    void setStatus(const ModelInfo &model, const Status &status);
    std::shared_ptr<DownloadTracker> makeTracker(const ModelInfo &model, const QString &destination);
    /// Whether the download of that number has another one of the same model in its place.
    bool isReplaced(const ModelInfo &model, int number) const;
    void endDownload(const ModelInfo &model, int number, const DownloadResult &result);

    std::optional<QString> m_applicationSupportFolder;
    QHash<QString, Status> m_statusMap; // by model id
    QHash<QString, std::shared_ptr<DownloadTracker>> m_activeDownloads;
    QHash<QString, int> m_activeNumbers; // of the active downloads
    QHash<QString, int> m_awaitedNumbers; // of those whose end the active one waits for
    int m_lastNumber = 0;
};

} // namespace sorvanta
