#pragma once

#include "audio/playback_controller.h"
#include "core/language_choice.h"
#include "core/log_lines_model.h"
#include "core/run_state.h"
#include "core/transcript_lines_model.h"
#include "core/transcript_search.h"
#include "core/transcription_run.h"
#include "export/export_menu.h"
#include "models/model_choice.h"

#include <QtQml/qqml.h>

// The types of lower floors that pages of screens read, made known to QML here: those floors know no QML.

namespace sorvanta {

struct RunStateForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::RunState)
    QML_NAMED_ELEMENT(RunState)
    QML_UNCREATABLE("held by a screen")
};

struct TranscriptionRunForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::TranscriptionRun)
    QML_NAMED_ELEMENT(TranscriptionRun)
    QML_UNCREATABLE("held by a screen")
};

struct TranscriptLinesModelForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::TranscriptLinesModel)
    QML_NAMED_ELEMENT(TranscriptLinesModel)
    QML_UNCREATABLE("held by a run")
};

struct TranscriptSearchStateForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::TranscriptSearchState)
    QML_NAMED_ELEMENT(TranscriptSearchState)
    QML_UNCREATABLE("held by a pane")
};

struct LogLinesModelForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::LogLinesModel)
    QML_NAMED_ELEMENT(LogLinesModel)
    QML_UNCREATABLE("held by a pane")
};

struct ModelChoiceForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::ModelChoice)
    QML_NAMED_ELEMENT(ModelChoice)
    QML_UNCREATABLE("held by a screen")
};

struct LanguageChoiceForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::LanguageChoice)
    QML_NAMED_ELEMENT(LanguageChoice)
    QML_UNCREATABLE("held by a screen")
};

struct PlaybackControllerForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::PlaybackController)
    QML_NAMED_ELEMENT(PlaybackController)
    QML_UNCREATABLE("held by a screen")
};

struct ExportMenuForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::ExportMenu)
    QML_NAMED_ELEMENT(ExportMenuContent)
    QML_UNCREATABLE("held by a screen")
};

struct ExportMenuEntryForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::ExportMenuEntry)
    QML_NAMED_ELEMENT(ExportMenuEntry)
    QML_UNCREATABLE("held by a menu")
};

} // namespace sorvanta
