#pragma once

#include "core/live_transcript.h"
#include "core/text_lines.h"

#include <QAbstractListModel>

namespace sorvanta {

/// The lines of a run's transcript as rows, one for each line of the displayed text, with only the rows announced
/// that a piece of output changed. Main thread only.
///
/// As TextLines it gives what the transcript holds now, which may be ahead of the rows announced.
class TranscriptLinesModel : public QAbstractListModel, public TextLines {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TextRole = Qt::UserRole };

    /// @param transcript whose lines are shown; must outlive the model
    explicit TranscriptLinesModel(const LiveTranscript &transcript, QObject *parent = nullptr);

    int count() const { return m_count; }
    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    qsizetype lineCount() const override { return m_transcript.lineCount(); }
    QStringView line(qsizetype index) const override;

    /// Announces what the last append() to the transcript changed.
    void apply(const LiveTranscript::Change &change);

    /// Announces that all is different: the transcript was cleared.
    void reset();

    bool stripDashes() const { return m_stripDashes; }
    void setStripDashes(bool stripDashes);

Q_SIGNALS:
    void countChanged();

private:
    const LiveTranscript &m_transcript;
    bool m_stripDashes = false;
    int m_count = 0;
};

} // namespace sorvanta
