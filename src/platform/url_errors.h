#pragma once

#include "platform/error.h"

#include <QString>

namespace sorvanta {

/// Why a transfer over the network failed; the values are the codes of the domain "NSURLErrorDomain".
enum class UrlFailure {
    Unknown = -1,
    Cancelled = -999,
    BadUrl = -1000,
    TimedOut = -1001,
    UnsupportedUrl = -1002,
    HostNotFound = -1003,
    NoConnection = -1004,
    ConnectionLost = -1005,
    TooManyRedirects = -1007,
    Offline = -1009,
    BadResponse = -1011,
    NotSecure = -1022,
    TlsFailed = -1200,
    BadCertificate = -1202,
};

/// What a user is told of it. `host` is the server's name, which the sentence on a bad certificate shows.
Error urlError(UrlFailure failure, const QString &host);

} // namespace sorvanta
