#pragma once

#include "platform/file_system.h"
#include "support/history_entries.h"
#include "support/history_surroundings.h"
#include "support/printing.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace sorvanta {

/// A store in a folder of its own, made when a test first asks for it.
class HistoryStoreTest : public testing::Test {
protected:
    TranscriptionHistoryStore &store()
    {
        if (!m_store)
            m_store.emplace(surroundings.in(base));
        return *m_store;
    }

    /// What another start of the application would find.
    TranscriptionHistoryStore &storeAfterRestart()
    {
        m_store.emplace(surroundings.in(base));
        return *m_store;
    }

    QString path(const QString &name) const { return base + u'/' + name; }
    QString historyPath() const { return path(u"transcription-history.json"_qs); }
    QStringList namesIn(const QString &folder) const
    {
        return QDir(path(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    void putHistory(const QByteArray &bytes) const
    {
        makeFolder(base);
        writeFileAtomically(historyPath(), bytes);
    }

    /// A recording outside of the store's folders.
    QString recording(const QString &name, const QByteArray &bytes = "sound") const
    {
        const QString file = outside.filePath(name);
        writeFileAtomically(file, bytes);
        return file;
    }

    QTemporaryDir outside;
    const QString base = outside.filePath(u"data/sorvanta"_qs);
    FakeHistorySurroundings surroundings;

private:
    std::optional<TranscriptionHistoryStore> m_store;
};

} // namespace sorvanta
