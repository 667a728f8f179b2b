#pragma once

#include "platform/error.h"

namespace sorvanta {

// What a user is told when work with files fails: errors of the domain "NSCocoaErrorDomain", whose code and sentence
// follow from the system's error number. Paths are absolute; the sentences name the last component, its folder, or
// the volume.

/// An Error that knows what the system said.
class ReadingError : public Error {
public:
    ReadingError(const Error &error, int systemError)
        : Error(error)
        , m_systemError(systemError)
    {
    }

    int systemError() const { return m_systemError; }

private:
    int m_systemError;
};

/// The file or folder at `path` could not be opened or read.
ReadingError readingError(const QString &path, int systemError);

/// The file or folder at `path` could not be made, written or put in its place.
Error writingError(const QString &path, int systemError);

/// What lies at `path` could not be removed.
Error removingError(const QString &path, int systemError);

/// The file at `source` could not be copied to `destination`. What concerns the destination alone is told as
/// writingError() tells it.
Error copyingError(const QString &source, const QString &destination, int systemError);

/// The item at `source` could not be moved to `destination`; told as copyingError() tells it.
Error movingError(const QString &source, const QString &destination, int systemError);

/// What was read is not what it should be: code 4864.
Error incorrectFormatError();

/// What was read lacks something that it must have: code 4865.
Error missingDataError();

} // namespace sorvanta
