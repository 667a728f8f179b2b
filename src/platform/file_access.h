#pragma once

namespace sorvanta {

/// Who may use a file that is made.
enum class FileAccess {
    Private, ///< its owner alone (0600), even where it replaces a file that others may use
    Usual, ///< those whom the user's umask admits; a file that replaces another has the permissions of that one
};

} // namespace sorvanta
