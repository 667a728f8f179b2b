#pragma once

#include "core/audio_preparer.h"

#include <QString>

namespace sorvanta {

class FilePanels;
class ModelsSettingsViewModel;
class TranscriptionHistoryStore;

/// What every screen that transcribes works with; all of it outlives the screen.
struct ScreenSurroundings {
    ModelsSettingsViewModel &models;
    TranscriptionHistoryStore &history;
    FilePanels &panels;
    QString resourceFolder; ///< where the engine lies
    AudioPreparer::Settings preparation = {};
};

} // namespace sorvanta
