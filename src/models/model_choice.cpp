#include "models/model_choice.h"

#include "models/models_settings_view_model.h"

#include <algorithm>

namespace sorvanta {

ModelChoice::ModelChoice(ModelsSettingsViewModel &models, QObject *parent)
    : QObject(parent)
    , m_models(models)
{
    connect(&m_models, &ModelsSettingsViewModel::statusMapChanged, this, [this] {
        syncSelectedModel();
        emit changed();
    });
}

void ModelChoice::setSelectedModelID(const std::optional<QString> &id)
{
    if (m_selectedModelID == id)
        return;
    m_selectedModelID = id;
    emit changed();
}

QStringList ModelChoice::names() const
{
    QStringList names;
    for (const auto &[model, path] : m_models.downloadedModels())
        names << model.name;
    return names;
}

int ModelChoice::index() const
{
    const auto models = m_models.downloadedModels();
    const auto chosen = std::find_if(models.begin(), models.end(),
                                     [this](const auto &pair) { return pair.first.id == m_selectedModelID; });
    return chosen == models.end() ? -1 : static_cast<int>(chosen - models.begin());
}

void ModelChoice::choose(int index)
{
    const auto models = m_models.downloadedModels();
    if (index >= 0 && index < models.size())
        setSelectedModelID(models[index].first.id);
}

QString ModelChoice::hint() const
{
    return hasModels() ? QStringLiteral("Need another model? Open Models Settings to download it.")
                       : QStringLiteral("No models downloaded. Visit Models Settings to download a model into "
                                        "Application Support/Sorvanta/Models.");
}

std::optional<QString> ModelChoice::modelPath() const
{
    const int chosen = index();
    return chosen < 0 ? std::nullopt : std::optional(m_models.downloadedModels()[chosen].second);
}

QString ModelChoice::modelName() const
{
    const int chosen = index();
    return chosen < 0 ? QStringLiteral("Unknown model") : m_models.downloadedModels()[chosen].first.name;
}

void ModelChoice::refresh()
{
    m_models.refreshStatuses();
    syncSelectedModel();
}

void ModelChoice::syncSelectedModel()
{
    const auto models = m_models.downloadedModels();
    if (models.isEmpty())
        setSelectedModelID(std::nullopt);
    else if (index() < 0)
        setSelectedModelID(models.first().first.id);
}

} // namespace sorvanta
