#include "export/export_names.h"

#include "platform/paths.h"
#include "platform/unique_names.h"

#include <utility>

namespace sorvanta {

namespace {

const QString transcriptionEnding = u"_transcription"_qs;

/// The last path component without its extension and the point before that.
QString baseName(const QString &path)
{
    const QString name = lastPathComponent(path);
    const QString extension = pathExtension(path);
    return extension.isEmpty() ? name : name.chopped(extension.size() + 1);
}

QString withExtension(const QString &name, const QString &extension)
{
    return extension.isEmpty() ? name : name + u'.' + extension;
}

} // namespace

ExportNaming transcriptionNaming()
{
    return {transcriptionEnding, [] { return u"transcript"_qs + transcriptionEnding; }};
}

ExportNaming meetingNaming()
{
    return {transcriptionEnding, [] { return newDatedName(u"meeting_"_qs) + transcriptionEnding; }};
}

ExportNaming batchNaming(std::function<qsizetype()> selectedFileCount)
{
    return {transcriptionEnding, [selectedFileCount = std::move(selectedFileCount)] {
                return selectedFileCount() < 2 ? u"transcript"_qs : u"batch"_qs + transcriptionEnding;
            }};
}

ExportNaming historyNaming()
{
    const QString ending = u"_history"_qs;
    return {ending, [ending] { return u"transcript"_qs + ending; }};
}

QString defaultExportName(const ExportNaming &naming, const QString &extension, const std::optional<QString> &source)
{
    const QString base = source ? baseName(*source) : QString();
    const bool isNamed = !base.isEmpty() && base != u"/";
    return withExtension(isNamed ? base + naming.ending : naming.nameWithoutSource(), extension);
}

QString uniqueDownloadURL(const QString &path)
{
    return freePath(parentFolder(path), baseName(path), pathExtension(path));
}

QString uniqueFolderURL(const QString &folder, const QString &fileName)
{
    QString path = folder + u'/' + fileName;
    for (int number = 1; isNameTaken(path); ++number) {
        const QString name = u"%1 (%2)"_qs.arg(baseName(fileName), QString::number(number));
        path = folder + u'/' + withExtension(name, pathExtension(fileName));
    }
    return path;
}

} // namespace sorvanta
