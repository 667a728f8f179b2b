#pragma once

#include "models/models_settings_view_model.h"
#include "screens/models/models_settings_view.h"
#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace sorvanta {

/// The page of the Models screen with the real screen behind it.
class ModelsPageTest : public UiTest {
protected:
    enum Place { LargeTurbo, Large, Medium, Base, Small, Tiny };

    QString path(const QString &name) const { return folder.path() + "/Sorvanta/Models/" + name; }
    void makeFile(const QString &name)
    {
        QDir().mkpath(path({}));
        ASSERT_TRUE(QFile(path(name)).open(QIODevice::WriteOnly));
        screen.appear();
    }
    /// Makes each download of that file fail before it asks any server.
    void blockDownload(const QString &name) const { QDir().mkpath(path(name + ".part/full")); }

    /// Shows the model with that status, whatever the disk holds.
    void setStatus(Place place, const Status &status, bool hasFile = false)
    {
        screen.rows()->replace(place, modelRow(modelCatalogue()[place], status, hasFile, "large-v3-turbo"));
    }
    static Status downloading(qint64 received, qint64 expected, std::optional<double> seconds = std::nullopt)
    {
        return ModelStatus::Downloading{
            {.bytesReceived = received, .totalBytesExpected = expected, .estimatedSecondsRemaining = seconds}};
    }

    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "ModelsSettingsPage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", width}, {"height", height}});
    }

    QQuickItem *card(Place place) const
    {
        QQuickItem *found = nullptr;
        const bool isThere = QMetaObject::invokeMethod(root->findChild<QObject *>("modelCards"), "itemAt",
                                                       Q_RETURN_ARG(QQuickItem *, found), Q_ARG(int, place));
        if (!isThere || !found)
            throw std::runtime_error("there is no such card");
        return found;
    }
    /// The part of a card that has this name.
    QQuickItem *part(Place place, const QString &objectName) const
    {
        auto *found = card(place)->findChild<QQuickItem *>(objectName);
        if (!found)
            throw std::runtime_error("a card has no " + objectName.toStdString());
        return found;
    }
    QString text(Place place, const QString &objectName) const
    {
        return part(place, objectName)->property("text").toString();
    }
    bool isShown(Place place, const QString &objectName) const { return part(place, objectName)->isVisible(); }
    QColor shownColor(Place place, const QString &objectName) const
    {
        return part(place, objectName)->property("color").value<QColor>();
    }
    QRectF area(Place place, const QString &objectName) const { return UiTest::place(part(place, objectName)); }
    static QRectF area(const QQuickItem *shown) { return UiTest::place(shown); }
    /// What a screen reader finds in a card, in order.
    QStringList words(Place place) const { return spokenWords(accessible(card(place))); }

    QTemporaryDir folder;
    QStringList revealed;
    ModelsSettingsViewModel models{folder.path()};
    ModelsSettingsView screen{{.viewModel = models,
                               .recommendedModelID = "large-v3-turbo",
                               .revealFile = [this](const QString &file) { revealed << file; }}};
};

} // namespace sorvanta
