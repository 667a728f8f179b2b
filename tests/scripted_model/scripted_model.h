#pragma once

#include <string>
#include <vector>

/// One timed line that a scripted model recites. Times are seconds within its window of 30 seconds.
struct ScriptedLine {
    double start;
    double end;
    std::string text; ///< UTF-8, words separated by single blanks
};

/// A speech model in the ggml format that the real engine loads, whose decoder recites given lines for any audio. It
/// recognises nothing.
///
/// Each word, and each time, has a token of its own, and the weights lead from each token to its successor; a flag on
/// the last word of a window leads to the next window's first time. Behind the last window the first one begins again.
struct ScriptedModel {
    /// The lines of each window of 30 seconds. The first line of a window starts within 1.00 s of it; at most 200
    /// tokens a window and 21 windows.
    std::vector<std::vector<ScriptedLine>> windows;
    /// The size of the encoder, which costs time and does nothing else: 1 is quick, 32 takes some 0.5 s a window. At
    /// most 88.
    int audioLayers = 1;

    /// Writes the file, 15 MB or more.
    /// @throws std::runtime_error for a script that would not be recited for certain, or if the file cannot be written
    void write(const std::string &path) const;

    /// A script of three windows that says that it is one.
    static ScriptedModel demonstration();
};
