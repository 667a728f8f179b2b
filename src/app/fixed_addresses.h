#pragma once

#include <QUrl>

namespace sorvanta {

/// The privacy policy on the product's web site.
QUrl privacyURL();

/// The terms of service on the product's web site.
QUrl termsURL();

} // namespace sorvanta
