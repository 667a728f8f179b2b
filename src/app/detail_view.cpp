#include "app/detail_view.h"

#include "history/transcription_history_store.h"
#include "models/models_settings_view_model.h"
#include "platform/desktop/file_manager.h"
#include "platform/desktop/file_panels.h"

namespace sorvanta {

namespace {

ScreenSurroundings surroundings(FilePanels &panels, const QString &resourceFolder)
{
    return {
        .models = ModelsSettingsViewModel::shared(),
        .history = TranscriptionHistoryStore::shared(),
        .panels = panels,
        .resourceFolder = resourceFolder,
    };
}

} // namespace

DetailView::DetailView(FilePanels &panels, const QString &resourceFolder, QObject *parent)
    : QObject(parent)
    , m_fileScreen({.shared = surroundings(panels, resourceFolder)})
    , m_microphoneScreen({.shared = surroundings(panels, resourceFolder)})
    , m_meetingScreen({.shared = surroundings(panels, resourceFolder)})
    , m_batchScreen(surroundings(panels, resourceFolder))
    , m_historyScreen({.history = TranscriptionHistoryStore::shared(), .panels = panels})
    , m_modelsScreen({
          .viewModel = ModelsSettingsViewModel::shared(),
          .recommendedModelID = QStringLiteral("large-v3-turbo"),
          .revealFile = [](const QString &path) { revealInFileManager(path); },
      })
{
    // A hidden screen is on show as far as it knows, so each takes its first step now.
    m_fileScreen.appear();
    m_microphoneScreen.appear();
    m_meetingScreen.appear();
    m_batchScreen.appear();
    m_historyScreen.appear();
    m_modelsScreen.appear();
}

} // namespace sorvanta
