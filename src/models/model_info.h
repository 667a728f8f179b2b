#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace sorvanta {

/// A speech model that the application knows.
struct ModelInfo {
    QString id; ///< stable key
    QString name; ///< for the eye, and what a history entry keeps
    QString description; ///< a sentence or two
    QString fileName; ///< of the model file on disk
    QUrl downloadURL; ///< where it is fetched from, HTTPS

    bool operator==(const ModelInfo &) const = default;
};

/// The known models, in the order of every list and picker.
const QList<ModelInfo> &modelCatalogue();

} // namespace sorvanta
