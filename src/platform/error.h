#pragma once

#include <QString>

#include <exception>

namespace sorvanta {

/// A failure that a user is told of: thrown by whatever does the work, caught by a screen or a store, and shown
/// as one line of text.
class Error : public std::exception {
public:
    /// @param domain the kind of failure, for example "Whisper"
    /// @param code the number of the failure within its domain
    /// @param localizedDescription a plain English sentence; it is what the user reads
    Error(QString domain, int code, QString localizedDescription);

    const QString &domain() const { return m_domain; }
    int code() const { return m_code; }
    const QString &localizedDescription() const { return m_localizedDescription; }

    /// The description in UTF-8, for a debugger or a test's output.
    const char *what() const noexcept override { return m_what.constData(); }

private:
    QString m_domain;
    int m_code;
    QString m_localizedDescription;
    QByteArray m_what;
};

/// Thrown by work that ended because the user asked for it. It is no failure and is not shown as one.
class CancellationError : public Error {
public:
    CancellationError();
};

} // namespace sorvanta
