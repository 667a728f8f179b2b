#include "platform/file_errors.h"

#include "platform/paths.h"

#include <QStorageInfo>

#include <cerrno>

namespace sorvanta {

namespace {

enum Code {
    NoSuchFile = 4,
    ReadUnknown = 256,
    ReadNoPermission = 257,
    ReadInvalidName = 258,
    ReadNoSuchFile = 260,
    ReadTooLarge = 263,
    WriteUnknown = 512,
    WriteNoPermission = 513,
    WriteInvalidName = 514,
    WriteFileExists = 516,
    WriteOutOfSpace = 640,
    WriteReadOnlyVolume = 642,
    IncorrectFormat = 4864,
    MissingData = 4865,
};

Error cocoaError(Code code, const QString &sentence)
{
    return Error(u"NSCocoaErrorDomain"_qs, code, sentence);
}

Code readingCode(int systemError)
{
    switch (systemError) {
    case ENOENT:
        return ReadNoSuchFile;
    case EACCES:
    case EPERM:
        return ReadNoPermission;
    case ENAMETOOLONG:
        return ReadInvalidName;
    case EFBIG:
        return ReadTooLarge;
    default:
        return ReadUnknown;
    }
}

Code writingCode(int systemError)
{
    switch (systemError) {
    case ENOENT:
        return NoSuchFile;
    case EACCES:
    case EPERM:
        return WriteNoPermission;
    case ENAMETOOLONG:
        return WriteInvalidName;
    case EEXIST:
        return WriteFileExists;
    case ENOSPC:
    case EDQUOT:
        return WriteOutOfSpace;
    case EROFS:
        return WriteReadOnlyVolume;
    default:
        return WriteUnknown;
    }
}

QString outOfSpaceSentence(const QString &name, const QString &volume)
{
    if (volume.isEmpty())
        return u"The file couldn’t be saved because there isn’t enough space."_qs;
    return u"You can’t save the file “%1” because the volume “%2” is out of space."_qs.arg(name, volume);
}

QString volumeName(const QString &path)
{
    return QStorageInfo(parentFolder(path)).displayName();
}

Error readingSentence(const QString &path, Code code)
{
    const QString name = lastPathComponent(path);
    switch (code) {
    case ReadNoSuchFile:
        return cocoaError(code, u"The file “%1” couldn’t be opened because there is no such file."_qs.arg(name));
    case ReadNoPermission:
        return cocoaError(
            code, u"The file “%1” couldn’t be opened because you don’t have permission to view it."_qs.arg(name));
    default:
        return cocoaError(code, u"The file “%1” couldn’t be opened."_qs.arg(name));
    }
}

/// @param done what could not be done to the source: "copied", "moved"
Error transferError(const QString &done, const QString &source, const QString &destination, int systemError)
{
    const QString name = lastPathComponent(source);
    const QString folder = lastPathComponent(parentFolder(destination));
    const Code code = writingCode(systemError);
    switch (code) {
    case NoSuchFile:
        return cocoaError(code, u"“%1” couldn’t be %2 to “%3” because either the former doesn’t exist, or the folder "
                                u"containing the latter doesn’t exist."_qs.arg(name, done, folder));
    case WriteFileExists:
        return cocoaError(
            code, u"“%1” couldn’t be %2 to “%3” because an item with the same name already exists."_qs.arg(name, done,
                                                                                                           folder));
    default:
        return writingError(destination, systemError);
    }
}

} // namespace

ReadingError readingError(const QString &path, int systemError)
{
    return {readingSentence(path, readingCode(systemError)), systemError};
}

Error writingError(const QString &path, int systemError)
{
    const QString name = lastPathComponent(path);
    const QString folder = lastPathComponent(parentFolder(path));
    const Code code = writingCode(systemError);
    switch (code) {
    case NoSuchFile:
        return cocoaError(code, u"The folder “%1” doesn’t exist."_qs.arg(folder));
    case WriteNoPermission:
        return cocoaError(code,
                          u"You don’t have permission to save the file “%1” in the folder “%2”."_qs.arg(name, folder));
    case WriteFileExists:
        return cocoaError(code, u"The file “%1” couldn’t be saved in the folder “%2” because a file with the same name "
                                u"already exists."_qs.arg(name, folder));
    case WriteOutOfSpace:
        return cocoaError(code, outOfSpaceSentence(name, volumeName(path)));
    case WriteReadOnlyVolume:
        return cocoaError(
            code, u"You can’t save the file “%1” because the volume “%2” is read only."_qs.arg(name, volumeName(path)));
    default:
        return cocoaError(code, u"The file “%1” couldn’t be saved in the folder “%2”."_qs.arg(name, folder));
    }
}

Error removingError(const QString &path, int systemError)
{
    const QString name = lastPathComponent(path);
    const Code code = writingCode(systemError);
    if (code == WriteNoPermission) {
        return cocoaError(code,
                          u"“%1” couldn’t be removed because you don’t have permission to access it."_qs.arg(name));
    }
    return cocoaError(code, u"“%1” couldn’t be removed."_qs.arg(name));
}

Error copyingError(const QString &source, const QString &destination, int systemError)
{
    return transferError(u"copied"_qs, source, destination, systemError);
}

Error movingError(const QString &source, const QString &destination, int systemError)
{
    return transferError(u"moved"_qs, source, destination, systemError);
}

Error incorrectFormatError()
{
    return cocoaError(IncorrectFormat, u"The data couldn’t be read because it isn’t in the correct format."_qs);
}

Error missingDataError()
{
    return cocoaError(MissingData, u"The data couldn’t be read because it is missing."_qs);
}

} // namespace sorvanta
