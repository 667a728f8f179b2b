#include "screens/models/model_row.h"

#include "models/download_text.h"

namespace sorvanta {

namespace {

const QString bestForNonEnglishID = QStringLiteral("large-v3");

/// Adds to a row what its status says and offers.
class StatusWriter {
public:
    StatusWriter(ModelRow &row, const ModelInfo &model, bool hasFile)
        : m_row(row)
        , m_model(model)
        , m_hasFile(hasFile)
    {
    }

    void operator()(const ModelStatus::NotDownloaded &) const
    {
        m_row.statusText = QStringLiteral("Not downloaded");
        m_row.statusSymbol = QStringLiteral("icloud.and.arrow.down");
        m_row.statusTone = StatusTone::Secondary;
        m_row.offersDownload = true;
    }

    void operator()(const ModelStatus::Downloading &downloading) const
    {
        const DownloadState &state = downloading.state;
        m_row.statusText = percentLine(state);
        m_row.statusTone = StatusTone::Active;
        m_row.hasProgress = true;
        m_row.isIndeterminate = state.totalBytesExpected < 1;
        if (!m_row.isIndeterminate)
            m_row.progress = static_cast<double>(state.bytesReceived) / static_cast<double>(state.totalBytesExpected);
        m_row.byteLine = byteLine(state);
    }

    void operator()(const ModelStatus::Downloaded &) const
    {
        m_row.statusText = QStringLiteral("Ready");
        m_row.statusSymbol = QStringLiteral("checkmark.circle.fill");
        m_row.statusTone = StatusTone::Good;
        m_row.offersReveal = true;
        m_row.offersDelete = true;
        m_row.savedAsText = QStringLiteral("Saved as %1 in Application Support.").arg(m_model.fileName);
    }

    void operator()(const ModelStatus::Failed &failed) const
    {
        m_row.statusText = QStringLiteral("Failed");
        m_row.statusSymbol = QStringLiteral("exclamationmark.triangle.fill");
        m_row.statusTone = StatusTone::Bad;
        m_row.failureText = failed.text;
        m_row.offersDelete = m_hasFile;
        m_row.offersRetry = true;
    }

private:
    ModelRow &m_row;
    const ModelInfo &m_model;
    bool m_hasFile;
};

} // namespace

ModelRow modelRow(const ModelInfo &model, const Status &status, bool hasFile, const QString &recommendedModelID)
{
    ModelRow row;
    row.name = model.name;
    row.description = model.description;
    if (model.id == recommendedModelID)
        row.recommendedBadge = QStringLiteral("Recommended");
    if (model.id == bestForNonEnglishID)
        row.nonEnglishBadge = QStringLiteral("Best for non-English");
    std::visit(StatusWriter(row, model, hasFile), status);
    return row;
}

} // namespace sorvanta
