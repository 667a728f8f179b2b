#pragma once

#include <QString>

namespace sorvanta {

/// What this build was told at configuration time. README.md lists the options and their defaults.
struct BuildConfiguration {
    QString modelServer; ///< HTTPS base address of the server that carries the model files, without a slash at the end
    QString webSite; ///< address of the web site with the terms and the privacy policy, without a slash at the end
    QString supportAddress; ///< mail address
    QString shortVersion; ///< for example "1.0"; may be empty
    QString buildVersion; ///< for example "1"; may be empty
};

const BuildConfiguration &buildConfiguration();

} // namespace sorvanta
