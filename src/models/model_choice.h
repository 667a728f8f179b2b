#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace sorvanta {

class ModelsSettingsViewModel;

/// The model picker of a transcription screen: the downloaded models and the one that is chosen. Each screen has its
/// own, and the choice lives as long as the screen. Main thread only.
class ModelChoice : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList names READ names NOTIFY changed)
    Q_PROPERTY(int index READ index WRITE choose NOTIFY changed)
    Q_PROPERTY(bool hasModels READ hasModels NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)

public:
    /// @param models must outlive the choice
    explicit ModelChoice(ModelsSettingsViewModel &models, QObject *parent = nullptr);

    /// The id of the chosen model, or none.
    const std::optional<QString> &selectedModelID() const { return m_selectedModelID; }
    void setSelectedModelID(const std::optional<QString> &id);

    /// The names of the downloaded models, in the catalogue's order.
    QStringList names() const;
    /// The chosen row of `names`, -1 for none.
    int index() const;
    void choose(int index);
    bool hasModels() const { return !names().isEmpty(); }
    /// The line under the picker, or in its place where there is nothing to pick.
    QString hint() const;

    /// The path of the chosen model's file, or none if there is no model to run with.
    std::optional<QString> modelPath() const;
    /// The chosen model's name for the history, "Unknown model" if there is none.
    QString modelName() const;

    /// What a screen does when it comes on show: looks at the disk, and moves a choice that has gone.
    void refresh();

    /// Moves a choice that is not among the downloaded models to the first of them, or to none.
    void syncSelectedModel();

Q_SIGNALS:
    void changed();

private:
    ModelsSettingsViewModel &m_models;
    std::optional<QString> m_selectedModelID;
};

} // namespace sorvanta
