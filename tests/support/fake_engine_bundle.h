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

    /// The command that holds a script up until the test opens the gate of that name.
    QByteArray awaitGate(const QString &name = QStringLiteral("gate")) const
    {
        return "await " + QFile::encodeName(m_folder.filePath(name)) + '\n';
    }
    void openGate(const QString &name = QStringLiteral("gate")) const
    {
        QFile(m_folder.filePath(name)).open(QIODevice::WriteOnly);
    }

    /// Whether the engine runs now, be it on whatever file or on this one.
    bool isAtWork(const QByteArray &audioPath = {}) const
    {
        const QByteArray engine = QFile::encodeName(enginePath());
        const QDir processes(QStringLiteral("/proc"));
        for (const QString &process : processes.entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
            QFile file(processes.filePath(process + QStringLiteral("/cmdline")));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            const QList<QByteArray> words = file.readAll().split('\0');
            if (words.first() == engine && (audioPath.isEmpty() || words.contains(audioPath)))
                return true;
        }
        return false;
    }

private:
    QTemporaryDir m_folder;
};
