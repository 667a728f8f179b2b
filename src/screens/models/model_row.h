#pragma once

#include "models/model_info.h"
#include "models/model_status.h"

#include <QObject>
#include <QString>
#include <QtQml/qqml.h>

namespace sorvanta {

/// What the words of a model's status mean for the eye.
namespace StatusTone {
Q_NAMESPACE
QML_ELEMENT

enum Tone {
    Secondary, ///< nothing to be told
    Active, ///< something goes on
    Good,
    Bad,
};
Q_ENUM_NS(Tone)
} // namespace StatusTone

/// All that the row of one model shows. A text that is empty is not shown.
struct ModelRow {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString recommendedBadge MEMBER recommendedBadge)
    Q_PROPERTY(QString nonEnglishBadge MEMBER nonEnglishBadge)
    Q_PROPERTY(QString description MEMBER description)
    Q_PROPERTY(QString statusText MEMBER statusText)
    Q_PROPERTY(QString statusSymbol MEMBER statusSymbol)
    Q_PROPERTY(sorvanta::StatusTone::Tone statusTone MEMBER statusTone)
    Q_PROPERTY(bool hasProgress MEMBER hasProgress)
    Q_PROPERTY(bool isIndeterminate MEMBER isIndeterminate)
    Q_PROPERTY(double progress MEMBER progress)
    Q_PROPERTY(QString byteLine MEMBER byteLine)
    Q_PROPERTY(QString failureText MEMBER failureText)
    Q_PROPERTY(bool offersDownload MEMBER offersDownload)
    Q_PROPERTY(bool offersReveal MEMBER offersReveal)
    Q_PROPERTY(bool offersDelete MEMBER offersDelete)
    Q_PROPERTY(bool offersRetry MEMBER offersRetry)
    Q_PROPERTY(QString savedAsText MEMBER savedAsText)

public:
    QString name;
    QString recommendedBadge;
    QString nonEnglishBadge;
    QString description;
    QString statusText;
    QString statusSymbol; ///< empty for none
    StatusTone::Tone statusTone = StatusTone::Secondary;
    bool hasProgress = false; ///< whether there is a progress bar
    bool isIndeterminate = false; ///< of the bar: whether it does not know how far it is
    double progress = 0; ///< of the bar, from 0 to 1
    QString byteLine;
    QString failureText;
    bool offersDownload = false;
    bool offersReveal = false;
    bool offersDelete = false;
    bool offersRetry = false;
    QString savedAsText;

    bool operator==(const ModelRow &) const = default;
};

/// @param hasFile whether a file of the model lies on the disk, whatever its status
/// @param recommendedModelID the id of the model that wears the badge "Recommended"
ModelRow modelRow(const ModelInfo &model, const Status &status, bool hasFile, const QString &recommendedModelID);

} // namespace sorvanta
