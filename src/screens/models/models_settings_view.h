#pragma once

#include "screens/models/model_rows.h"

#include <QObject>
#include <QString>
#include <QtQml/qqml.h>

#include <functional>

namespace sorvanta {

class ModelsSettingsViewModel;

/// The screen on which models are fetched and removed: the whole catalogue, the state of each model, and what can be
/// done with it. Main thread only.
class ModelsSettingsView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::ModelRows *rows READ rows CONSTANT)

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ModelsSettingsViewModel &viewModel;
        QString recommendedModelID; ///< the model that wears the badge "Recommended"
        std::function<void(const QString &path)> revealFile; ///< selects a file in the file manager
    };

    explicit ModelsSettingsView(Surroundings surroundings, QObject *parent = nullptr);

    /// One row for each model, in the catalogue's order.
    ModelRows *rows() { return &m_rows; }

    /// What the screen does when it comes on show.
    void appear();

    // What the buttons of a row do; `row` is one of `rows`.

    /// Fetches the model, also once more after a failure. One whose status says that it is being fetched is left alone.
    Q_INVOKABLE void download(int row);
    /// Removes the model's file without asking.
    Q_INVOKABLE void deleteLocalCopy(int row);
    /// Selects the file of a downloaded model in the file manager.
    Q_INVOKABLE void reveal(int row) const;

private:
    const ModelInfo &model(int row) const;
    ModelRow currentRow(const ModelInfo &model) const;
    QList<ModelRow> currentRows() const;
    void updateRows();

    Surroundings m_surroundings;
    ModelRows m_rows;
};

} // namespace sorvanta
