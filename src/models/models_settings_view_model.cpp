#include "models/models_settings_view_model.h"

#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/main_queue.h"

#include <QDir>
#include <QPointer>

namespace sorvanta {

ModelsSettingsViewModel &ModelsSettingsViewModel::shared()
{
    static auto *const instance = new ModelsSettingsViewModel(applicationSupportFolder());
    return *instance;
}

ModelsSettingsViewModel::ModelsSettingsViewModel(std::optional<QString> applicationSupportFolder, QObject *parent)
    : QObject(parent)
    , m_applicationSupportFolder(std::move(applicationSupportFolder))
{
    refreshStatuses();
}

Status ModelsSettingsViewModel::status(const ModelInfo &model) const
{
    const auto found = m_statusMap.constFind(model.id);
    return found == m_statusMap.constEnd() ? Status(ModelStatus::NotDownloaded{}) : *found;
}

void ModelsSettingsViewModel::refreshStatuses()
{
    for (const ModelInfo &model : availableModels()) {
        if (const auto path = localURL(model))
            setStatus(model, ModelStatus::Downloaded{*path});
        else if (!std::holds_alternative<ModelStatus::Downloading>(status(model)))
            setStatus(model, ModelStatus::NotDownloaded{});
    }
}

QList<std::pair<ModelInfo, QString>> ModelsSettingsViewModel::downloadedModels() const
{
    QList<std::pair<ModelInfo, QString>> models;
    for (const ModelInfo &model : availableModels()) {
        const Status current = status(model);
        if (const auto *downloaded = std::get_if<ModelStatus::Downloaded>(&current))
            models.append({model, downloaded->path});
    }
    return models;
}

std::optional<QString> ModelsSettingsViewModel::localURL(const ModelInfo &model) const
{
    try {
        const QString path = modelsDirectory() + QLatin1Char('/') + model.fileName;
        return itemExists(path) ? std::optional(path) : std::nullopt;
    } catch (const Error &) {
        return std::nullopt;
    }
}

QString ModelsSettingsViewModel::modelsDirectory() const
{
    const QString folder = QDir::cleanPath(applicationSupportDirectory() + QStringLiteral("/Sorvanta/Models"));
    if (!itemExists(folder))
        makeFolder(folder);
    return folder;
}

QString ModelsSettingsViewModel::applicationSupportDirectory() const
{
    if (!m_applicationSupportFolder)
        throw Error(QStringLiteral("ModelDownload"), 0, QStringLiteral("Application Support directory unavailable."));
    return *m_applicationSupportFolder;
}

void ModelsSettingsViewModel::startDownload(const ModelInfo &model)
{
    setStatus(model, ModelStatus::Downloading{});
    QString folder;
    try {
        folder = modelsDirectory();
    } catch (const Error &error) {
        setStatus(model, ModelStatus::Failed{error.localizedDescription()});
        return;
    }
    const QPointer<ModelsSettingsViewModel> self(this);
    const auto tracker = std::make_shared<DownloadTracker>(
        model, folder + QLatin1Char('/') + model.fileName,
        [self, model](const DownloadState &state) {
            postToMain([self, model, state] {
                if (self)
                    self->setStatus(model, ModelStatus::Downloading{state});
            });
        },
        [self, model](const DownloadResult &result) {
            postToMain([self, model, result] {
                if (self)
                    self->endDownload(model, result);
            });
        });
    m_activeDownloads.insert(model.id, tracker);
    tracker->start();
}

void ModelsSettingsViewModel::endDownload(const ModelInfo &model, const DownloadResult &result)
{
    m_activeDownloads.remove(model.id);
    if (const auto *path = std::get_if<QString>(&result))
        setStatus(model, ModelStatus::Downloaded{*path});
    else
        setStatus(model, ModelStatus::Failed{std::get<Error>(result).localizedDescription()});
}

void ModelsSettingsViewModel::deleteLocalCopy(const ModelInfo &model)
{
    try {
        if (const auto path = localURL(model))
            removeItem(*path);
        setStatus(model, ModelStatus::NotDownloaded{});
    } catch (const Error &error) {
        setStatus(model, ModelStatus::Failed{QStringLiteral("Could not remove file: ") + error.localizedDescription()});
    }
}

void ModelsSettingsViewModel::setStatus(const ModelInfo &model, const Status &status)
{
    const auto current = m_statusMap.constFind(model.id);
    if (current != m_statusMap.constEnd() && *current == status)
        return;
    m_statusMap.insert(model.id, status);
    emit statusMapChanged();
}

} // namespace sorvanta
