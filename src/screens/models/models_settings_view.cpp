#include "screens/models/models_settings_view.h"

#include "models/models_settings_view_model.h"

#include <utility>

namespace sorvanta {

ModelsSettingsView::ModelsSettingsView(Surroundings surroundings, QObject *parent)
    : QObject(parent)
    , m_surroundings(std::move(surroundings))
    , m_rows(currentRows())
{
    connect(&m_surroundings.viewModel, &ModelsSettingsViewModel::statusMapChanged, this,
            &ModelsSettingsView::updateRows);
}

void ModelsSettingsView::appear()
{
    m_surroundings.viewModel.refreshStatuses();
}

void ModelsSettingsView::download(int row)
{
    const ModelInfo &wanted = model(row);
    ModelsSettingsViewModel &models = m_surroundings.viewModel;
    if (!std::holds_alternative<ModelStatus::Downloading>(models.status(wanted)))
        models.startDownload(wanted);
}

void ModelsSettingsView::deleteLocalCopy(int row)
{
    m_surroundings.viewModel.deleteLocalCopy(model(row));
}

void ModelsSettingsView::reveal(int row) const
{
    const Status status = m_surroundings.viewModel.status(model(row));
    if (const auto *downloaded = std::get_if<ModelStatus::Downloaded>(&status))
        m_surroundings.revealFile(downloaded->path);
}

const ModelInfo &ModelsSettingsView::model(int row) const
{
    return m_surroundings.viewModel.availableModels().at(row);
}

ModelRow ModelsSettingsView::currentRow(const ModelInfo &model) const
{
    const ModelsSettingsViewModel &models = m_surroundings.viewModel;
    return modelRow(model, models.status(model), models.localURL(model).has_value(), m_surroundings.recommendedModelID);
}

QList<ModelRow> ModelsSettingsView::currentRows() const
{
    QList<ModelRow> rows;
    for (const ModelInfo &model : m_surroundings.viewModel.availableModels())
        rows << currentRow(model);
    return rows;
}

void ModelsSettingsView::updateRows()
{
    const QList<ModelRow> rows = currentRows();
    for (int place = 0; place < rows.size(); ++place)
        m_rows.replace(place, rows[place]);
}

} // namespace sorvanta
