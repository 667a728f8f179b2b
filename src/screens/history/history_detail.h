#pragma once

#include "core/transcript_text.h"
#include "history/transcription_history_entry.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

/// What the browser shows of the selected entry. The entry's files are looked at when it is shown, and at each
/// refresh(). Main thread only.
class HistoryDetail : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString date READ date NOTIFY changed)
    Q_PROPERTY(QVariantList tags READ tags NOTIFY changed)
    Q_PROPERTY(bool hasRecording READ hasRecording NOTIFY changed)
    Q_PROPERTY(QStringList textPieces READ textPieces NOTIFY textChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY textChanged)

public:
    using QObject::QObject;

    const std::optional<TranscriptionHistoryEntry> &entry() const { return m_entry; }
    void show(const std::optional<TranscriptionHistoryEntry> &entry);
    /// Looks at the files of the entry anew.
    void refresh();

    bool isShown() const { return m_entry.has_value(); }
    QString title() const;
    /// In the medium style.
    QString date() const;
    /// Maps with `text` and `systemImage`.
    QVariantList tags() const;
    /// Whether the copy of its recording is there.
    bool hasRecording() const { return m_hasRecording; }
    /// The text, as textPieces() gives it; nothing if it is blank.
    const QStringList &textPieces() const { return m_textPieces; }
    /// What is said in place of a text; empty if there is one.
    QString emptyText() const;

    /// The timed lines for the viewer.
    QList<TranscriptWindowSegment> windowSegments() const;

Q_SIGNALS:
    void changed();
    void textChanged();

private:
    bool findsRecording() const;
    bool isTextBlank() const;

    std::optional<TranscriptionHistoryEntry> m_entry;
    QStringList m_textPieces;
    bool m_hasRecording = false;
};

} // namespace sorvanta
