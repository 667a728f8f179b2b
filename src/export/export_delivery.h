#pragma once

#include "export/export_format.h"
#include "platform/desktop/file_panels.h"
#include "platform/folders.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <optional>

namespace sorvanta {

/// What a file is to hold. Where more than one is given, the first in this order counts.
struct DeliveryContent {
    std::optional<QString> sourcePath = {}; ///< of a file that is there; it is copied as it stands
    std::optional<QByteArray> data = {};
    std::optional<QString> text = {}; ///< written as UTF-8
};

/// Where the messages of a screen's exports go; none takes a message away.
struct ExportMessages {
    std::function<void(const std::optional<QString> &message)> setMessage;
    std::function<void(const std::optional<QString> &error)> setError;
};

/// What differs between screens in how an export is put on disk and spoken of. The name of the file, or the
/// description of the failure, follows the words directly; %1 is the saved word or, in those of a failure, the
/// extension in upper case.
struct DeliveryForm {
    QStringView saved;
    QStringView downloaded;
    QStringView saveFailed;
    QStringView downloadFailed;
    QStringView noDownloadsFolder; ///< the whole message
    bool clearsMessagesFirst; ///< before anything is done
    bool removesTargetFirst; ///< so that a copy finds the place free
};

/// The form of the four transcription screens.
inline constexpr DeliveryForm transcriptionDelivery{
    .saved = u"%1 to ",
    .downloaded = u"%1 to Downloads/",
    .saveFailed = u"Could not save %1: ",
    .downloadFailed = u"Could not save %1 to Downloads: ",
    .noDownloadsFolder = u"Could not locate Downloads folder.",
    .clearsMessagesFirst = false,
    .removesTargetFirst = false,
};

/// The form of the history.
inline constexpr DeliveryForm historyDelivery{
    .saved = u"Exported to ",
    .downloaded = u"Saved to Downloads/",
    .saveFailed = u"Export failed: ",
    .downloadFailed = u"Download failed: ",
    .noDownloadsFolder = u"Downloads folder not found.",
    .clearsMessagesFirst = true,
    .removesTargetFirst = true,
};

/// Puts exports of one screen on disk and reports what came of it. Main thread only. A panel that is still open when
/// the delivery goes is heard of no more.
class ExportDelivery : public QObject {
public:
    struct Settings {
        DeliveryForm form;
        FilePanels &panels; ///< outlives the delivery
        std::function<QString(const QString &extension)> defaultName; ///< the file name that is proposed
        ExportMessages messages;
        std::function<std::optional<QString>()> downloadsFolder = sorvanta::downloadsFolder;
    };

    explicit ExportDelivery(Settings settings, QObject *parent = nullptr);

    /// Asks where, then writes. Nothing happens if the panel is declined.
    /// @param extension of the proposed name, without a point
    /// @param allowedTypes the extensions of the panel
    /// @param savedWord what begins the message, for example "Saved TXT"
    void saveWithPanel(const DeliveryContent &content, const QString &extension, const QStringList &allowedTypes,
                       const QString &savedWord);

    /// Writes into the Downloads folder under a name that is free, without asking.
    void saveToDownloads(const DeliveryContent &content, const QString &extension, const QString &savedWord);

private:
    void clearMessages();
    void write(const DeliveryContent &content, const QString &target) const;
    void deliver(const DeliveryContent &content, const QString &target, const QString &success, const QString &failure);

    Settings m_settings;
};

/// What stands before the description of a failed save: "Could not save TXT: ".
QString saveFailure(const DeliveryForm &form, const QString &extension);

/// "Saved TXT".
QString savedWord(ExportFormat format);

/// The extensions that the save panel allows for a format; the format's own is the first.
QStringList allowedTypes(ExportFormat format);

} // namespace sorvanta
