#include "export/export_delivery.h"

#include "export/export_names.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "platform/unique_names.h"

#include <QPointer>

#include <utility>

namespace sorvanta {

namespace {

QString filledIn(QStringView words, const QString &word)
{
    return words.toString().replace(u"%1"_qs, word);
}

} // namespace

ExportDelivery::ExportDelivery(Settings settings, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
{
}

void ExportDelivery::saveWithPanel(const DeliveryContent &content, const QString &extension,
                                   const QStringList &allowedTypes, const QString &savedWord)
{
    clearMessages();
    const QString success = filledIn(m_settings.form.saved, savedWord);
    const QString failure = saveFailure(m_settings.form, extension);
    m_settings.panels.saveFile({m_settings.defaultName(extension), allowedTypes},
                               [self = QPointer(this), content, success, failure](const std::optional<QString> &path) {
                                   if (self && path)
                                       self->deliver(content, *path, success, failure);
                               });
}

void ExportDelivery::saveToDownloads(const DeliveryContent &content, const QString &extension, const QString &savedWord)
{
    clearMessages();
    const auto folder = m_settings.downloadsFolder();
    if (!folder) {
        m_settings.messages.setError(m_settings.form.noDownloadsFolder.toString());
        return;
    }
    const QString target = uniqueDownloadURL(*folder + u'/' + m_settings.defaultName(extension));
    deliver(content, target, filledIn(m_settings.form.downloaded, savedWord),
            filledIn(m_settings.form.downloadFailed, extension.toUpper()));
}

void ExportDelivery::clearMessages()
{
    if (!m_settings.form.clearsMessagesFirst)
        return;
    m_settings.messages.setMessage(std::nullopt);
    m_settings.messages.setError(std::nullopt);
}

void ExportDelivery::write(const DeliveryContent &content, const QString &target) const
{
    if (!content.sourcePath && !content.data && !content.text)
        throw Error(u"Export"_qs, 0, u"No content available to export."_qs);
    if (content.sourcePath && isSameItem(*content.sourcePath, target))
        return; // Whoever exports a stored file onto itself must not lose it.
    // A stored file that went meanwhile must not take with it what it was to replace.
    const bool isThere = !content.sourcePath || itemExists(*content.sourcePath);
    if (m_settings.form.removesTargetFirst && isThere && isNameTaken(target))
        removeItem(target);
    if (content.sourcePath)
        copyFile(*content.sourcePath, target, FileAccess::Usual);
    else
        writeFileAtomically(target, content.data ? *content.data : content.text->toUtf8(), FileAccess::Usual);
}

void ExportDelivery::deliver(const DeliveryContent &content, const QString &target, const QString &success,
                             const QString &failure)
{
    try {
        write(content, target);
    } catch (const Error &error) {
        m_settings.messages.setError(failure + error.localizedDescription());
        return;
    }
    m_settings.messages.setMessage(success + lastPathComponent(target));
    m_settings.messages.setError(std::nullopt);
}

QString saveFailure(const DeliveryForm &form, const QString &extension)
{
    return filledIn(form.saveFailed, extension.toUpper());
}

QString savedWord(ExportFormat format)
{
    return u"Saved "_qs + shortLabel(format);
}

QStringList allowedTypes(ExportFormat format)
{
    if (format == ExportFormat::html)
        return {fileExtension(format), u"htm"_qs};
    return {fileExtension(format)};
}

} // namespace sorvanta
