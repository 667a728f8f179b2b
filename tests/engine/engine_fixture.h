#pragma once

#include "core/transcription_run.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// Runs the real engine over real files with computed models, and looks at the fields that a screen shows.
class EngineTest : public testing::Test {
protected:
    /// Makes the folder and the models that all tests share.
    static void SetUpTestSuite();
    static void TearDownTestSuite();

    void start(const QString &audio, const QString &model, const QString &language = QStringLiteral("auto"));
    void waitForEnd();
    void transcribe(const QString &audio, const QString &model, const QString &language = QStringLiteral("auto"));

    /// A file in the shared folder.
    static QString path(const QString &name) { return s_folder->filePath(name); }
    static QString quickModel() { return path(QStringLiteral("quick.bin")); }
    /// Takes half a second and more for each window of 30 seconds.
    static QString slowModel() { return path(QStringLiteral("slow.bin")); }

    /// Writes a file with these bytes. @return its path
    static QString writeFile(const QString &name, const QByteArray &bytes);
    static QByteArray bytesOf(const QString &path);
    /// A tone, by the extension a WAV or an M4A file. @return its path
    static QString tone(const QString &name, double seconds);

    /// The lines that the computed model recites in its first three windows.
    static QStringList recitedLines();

    QStringList events; ///< what the run's hooks were called for
    sorvanta::TranscriptionRun run{{QStringLiteral(SORVANTA_RESOURCE_FOLDER), false},
                                   {.removeTemporaries = [this] { events << QStringLiteral("remove"); },
                                    .saveToHistory = [this] { events << QStringLiteral("save"); }}};

private:
    static std::unique_ptr<QTemporaryDir> s_folder;
};
