#pragma once

#include "history/transcription_history_store.h"
#include "models/models_settings_view_model.h"
#include "screens/screen_surroundings.h"
#include "support/fake_engine_bundle.h"
#include "support/fake_file_panels.h"
#include "support/waiting.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QUuid>

/// All that a screen works with, each in a folder of its own: models, a history, panels, an engine that does as it is
/// told, and a temporary folder that can be looked through.
class ScreenWorkbench {
    QTemporaryDir m_folder;
    QByteArray m_temporaryFolderBefore = qgetenv("TMPDIR");

public:
    ScreenWorkbench() { qputenv("TMPDIR", makeFolder(QStringLiteral("temporary")).toLocal8Bit()); }
    ScreenWorkbench(const ScreenWorkbench &) = delete;
    ScreenWorkbench &operator=(const ScreenWorkbench &) = delete;
    ~ScreenWorkbench()
    {
        // A screen that has gone may have left a conversion behind, which still writes.
        QThreadPool::globalInstance()->waitForDone(patience);
        if (m_temporaryFolderBefore.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_temporaryFolderBefore);
    }

    /// Puts a file into the models folder; the engine takes its content as commands.
    QString installModel(const QString &fileName, const QByteArray &commands = {}) const
    {
        const QString path = makeFolder(QStringLiteral("Sorvanta/Models")) + u'/' + fileName;
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(commands);
        return path;
    }

    /// A path for a file of the test; nothing is created.
    QString file(const QString &name) const { return makeFolder(QStringLiteral("files")) + u'/' + name; }

    QString temporaryFolder() const { return m_folder.filePath(QStringLiteral("temporary")); }
    /// The names of what lies in the temporary folder.
    QStringList temporaryFiles() const
    {
        return QDir(temporaryFolder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    sorvanta::ScreenSurroundings surroundings()
    {
        return {.models = models, .history = history, .panels = panels, .resourceFolder = engine.resourceFolder()};
    }

    FakeEngineBundle engine;
    FakeFilePanels panels;
    sorvanta::ModelsSettingsViewModel models{m_folder.path()};
    sorvanta::TranscriptionHistoryStore history{
        {m_folder.filePath(QStringLiteral("history")), [] { return 1770000000.0; }, [] { return newId(); }}};

private:
    static QString newId() { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(); }
    QString makeFolder(const QString &name) const
    {
        QDir().mkpath(m_folder.filePath(name));
        return m_folder.filePath(name);
    }
};
