#include "platform/url_errors.h"

namespace sorvanta {

namespace {

QString sentence(UrlFailure failure, const QString &host)
{
    switch (failure) {
    case UrlFailure::Unknown:
        break;
    case UrlFailure::Cancelled:
        return u"cancelled"_qs;
    case UrlFailure::BadUrl:
        return u"bad URL"_qs;
    case UrlFailure::TimedOut:
        return u"The request timed out."_qs;
    case UrlFailure::UnsupportedUrl:
        return u"unsupported URL"_qs;
    case UrlFailure::HostNotFound:
        return u"A server with the specified hostname could not be found."_qs;
    case UrlFailure::NoConnection:
        return u"Could not connect to the server."_qs;
    case UrlFailure::ConnectionLost:
        return u"The network connection was lost."_qs;
    case UrlFailure::TooManyRedirects:
        return u"too many HTTP redirects"_qs;
    case UrlFailure::Offline:
        return u"The Internet connection appears to be offline."_qs;
    case UrlFailure::BadResponse:
        return u"There was a bad response from the server."_qs;
    case UrlFailure::NotSecure:
        return u"The resource could not be loaded because the App Transport Security policy requires the use of a "
               u"secure connection."_qs;
    case UrlFailure::TlsFailed:
        return u"An SSL error has occurred and a secure connection to the server cannot be made."_qs;
    case UrlFailure::BadCertificate:
        return u"The certificate for this server is invalid. You might be connecting to a server that is pretending to "
               u"be “%1” which could put your confidential information at risk."_qs.arg(host);
    }
    return u"unknown error"_qs;
}

} // namespace

Error urlError(UrlFailure failure, const QString &host)
{
    return Error(u"NSURLErrorDomain"_qs, static_cast<int>(failure), sentence(failure, host));
}

} // namespace sorvanta
