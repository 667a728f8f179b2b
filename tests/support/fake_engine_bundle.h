#pragma once

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

/// A folder of resources with the engine that misbehaves on command, and scripts for it.
class FakeEngineBundle {
public:
    FakeEngineBundle()
    {
        const QString place = resourceFolder() + QStringLiteral("/sorvanta_extra_data/whisper.cpp/build/bin");
        QDir().mkpath(place);
        QFile::link(QStringLiteral(SORVANTA_FAKE_ENGINE), enginePath());
    }

    QString resourceFolder() const { return m_folder.filePath(QStringLiteral("resources")); }
    QString enginePath() const
    {
        return resourceFolder() + QStringLiteral("/sorvanta_extra_data/whisper.cpp/build/bin/whisper-cli");
    }

    /// Writes a script and returns its path, to be used as that of a model.
    QString script(const QByteArray &commands, const QString &name = QStringLiteral("script.bin")) const
    {
        QFile file(m_folder.filePath(name));
        file.open(QIODevice::WriteOnly);
        file.write(commands);
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};
