#pragma once

#include <QString>

#include <array>

namespace sorvanta {

/// The sections of the application, in the order of the sidebar.
enum class SidebarItemType {
    transcriptFromFile,
    recordAudio,
    meetingRecorder,
    batchProcessing,
    history,
    models,
    support,
};

/// A row of the sidebar.
struct SidebarItem {
    SidebarItemType type;
    const char *icon; ///< name of a symbol
    const char *label;
};

inline constexpr std::array<SidebarItem, 7> sidebarItems = {{
    {SidebarItemType::transcriptFromFile, "arrow.up.doc", "Transcript Audio From File"},
    {SidebarItemType::recordAudio, "mic", "Record Audio to Transcript"},
    {SidebarItemType::meetingRecorder, "waveform.badge.mic", "Record Meeting (System Audio)"},
    {SidebarItemType::batchProcessing, "tray.full", "Batch Processing"},
    {SidebarItemType::history, "clock", "History"},
    {SidebarItemType::models, "network", "Models Settings"},
    {SidebarItemType::support, "questionmark.circle", "Help"},
}};

} // namespace sorvanta
