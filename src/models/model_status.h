#pragma once

#include <QString>

#include <optional>
#include <variant>

namespace sorvanta {

/// How far a download is.
struct DownloadState {
    qint64 bytesReceived = 0; ///< written to disk so far
    qint64 totalBytesExpected = 0; ///< the size that the server announced; zero or less if it announced none
    std::optional<double> estimatedSecondsRemaining;

    bool operator==(const DownloadState &) const = default;
};

/// The state of a model; which alternative it holds is the case.
namespace ModelStatus {

struct Downloading {
    DownloadState state;
    bool operator==(const Downloading &) const = default;
};
struct Downloaded {
    QString path; ///< of the model file
    bool operator==(const Downloaded &) const = default;
};
struct Failed {
    QString text; ///< of the last failure
    bool operator==(const Failed &) const = default;
};
struct NotDownloaded {
    bool operator==(const NotDownloaded &) const = default;
};

} // namespace ModelStatus

using Status =
    std::variant<ModelStatus::Downloading, ModelStatus::Downloaded, ModelStatus::Failed, ModelStatus::NotDownloaded>;

} // namespace sorvanta
