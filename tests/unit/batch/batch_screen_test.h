#pragma once

#include "screens/batch/batch_processing_view.h"
#include "support/engine_scripts.h"
#include "support/printing.h"
#include "support/silent_media.h"
#include "support/transcribing_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

/// The batch screen with its surroundings, and a record of all that its status ever said.
class BatchScreenTest : public TranscribingTest<testing::Test> {
protected:
    BatchScreenTest() { makeScreen(); }

    void makeScreen()
    {
        screen = std::make_unique<sorvanta::BatchProcessingView>(bench.surroundings());
        statuses.clear();
        QObject::connect(screen->run(), &sorvanta::RunState::statusChanged, screen->run(),
                         [this] { statuses << screen->run()->status(); });
    }

    sorvanta::BatchRun &run() override { return *screen->run(); }
    const sorvanta::FileResult &result(qsizetype row) { return screen->results()->list().at(row); }
    sorvanta::FileStatus status(qsizetype row) { return result(row).status; }

    void choose(const QStringList &paths)
    {
        screen->chooseFiles();
        bench.panels.answerFiles(paths);
    }

    /// Makes the only model one that does as `commands` say.
    void useModel(const QByteArray &commands)
    {
        bench.installModel(QStringLiteral("ggml-base.bin"), commands);
        screen->appear();
    }

    void waitForEnd()
    {
        waitFor([this] { return !run().isTranscribing(); });
    }
    void start(const QStringList &paths, const QByteArray &commands)
    {
        useModel(commands);
        choose(paths);
        screen->start();
    }
    void transcribe(const QStringList &paths, const QByteArray &commands)
    {
        start(paths, commands);
        waitForEnd();
    }
    /// A file that has to be converted, long enough to be seen at it.
    QString movie(const QString &name, double seconds = 1.0) const
    {
        const QString path = bench.file(name);
        writeWav(path, seconds);
        return path;
    }

    QStringList statuses;
    std::unique_ptr<sorvanta::BatchProcessingView> screen;
};

inline const QStringList threeFiles{QStringLiteral("/music/a.wav"), QStringLiteral("/music/b.wav"),
                                    QStringLiteral("/music/c.wav")};

/// As twoLines, but for the file b, with which it fails.
inline const QByteArray failingWithB = twoLines + "only b.wav\ncomplain error%3A no good%0A\nexit 1\n";
