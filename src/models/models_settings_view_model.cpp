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
    const auto replaced = m_activeDownloads.value(model.id);
    const int replacedNumber = m_activeNumbers.value(model.id);
    const auto tracker = makeTracker(model, folder + QLatin1Char('/') + model.fileName);
    m_activeDownloads.insert(model.id, tracker);
    if (!replaced) {
        tracker->start();
        return;
    }
    // Both would write to the same partial file.
    if (!m_awaitedNumbers.contains(model.id))
        m_awaitedNumbers.insert(model.id, replacedNumber);
    replaced->cancel();
}

std::shared_ptr<DownloadTracker> ModelsSettingsViewModel::makeTracker(const ModelInfo &model,
                                                                      const QString &destination)
{
    const QPointer<ModelsSettingsViewModel> self(this);
    const int number = ++m_lastNumber;
    m_activeNumbers.insert(model.id, number);
    return std::make_shared<DownloadTracker>(
        model, destination,
        [self, model, number](const DownloadState &state) {
            postToMain([self, model, number, state] {
                if (self && !self->isReplaced(model, number))
                    self->setStatus(model, ModelStatus::Downloading{state});
            });
        },
        [self, model, number](const DownloadResult &result) {
            postToMain([self, model, number, result] {
                if (self)
                    self->endDownload(model, number, result);
            });
        });
}

bool ModelsSettingsViewModel::isReplaced(const ModelInfo &model, int number) const
{
    return m_activeNumbers.value(model.id, number) != number;
}

void ModelsSettingsViewModel::endDownload(const ModelInfo &model, int number, const DownloadResult &result)
{
    if (isReplaced(model, number)) {
        if (m_awaitedNumbers.value(model.id) == number) {
            m_awaitedNumbers.remove(model.id);
            m_activeDownloads[model.id]->start();
        }
        return;
    }
    m_activeDownloads.remove(model.id);
    m_activeNumbers.remove(model.id);
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
