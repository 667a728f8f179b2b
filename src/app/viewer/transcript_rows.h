#pragma once

#include "app/viewer/transcript_window_model.h"
#include "core/text_lines.h"

#include <QAbstractListModel>

#include <vector>

namespace sorvanta {

/// The display lines of a viewer as rows: the text of each segment or, without segments, the lines of the transcript.
/// What changes is announced row by row. Main thread only.
class TranscriptRows : public QAbstractListModel, public TextLines {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TextRole = Qt::UserRole, TimesRole, IsActiveRole };

    /// @param model whose lines are shown; must outlive the rows
    explicit TranscriptRows(const TranscriptWindowModel &model, QObject *parent = nullptr);

    int count() const { return m_count; }
    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    qsizetype lineCount() const override { return m_count; }
    QStringView line(qsizetype index) const override;

Q_SIGNALS:
    void countChanged();
    /// The lines from `firstLine` on were read anew; those before it are as they were.
    void linesChanged(qsizetype firstLine);

private:
    void readTranscriptFrom(qsizetype position);
    qsizetype readLines() const;
    void takeTranscript(qsizetype kept);
    void takeSegments(qsizetype first, qsizetype removed, qsizetype added);
    void replaceRows(qsizetype first, qsizetype removed, qsizetype added);
    void reset();
    void moveActive();
    QString times(qsizetype row) const;

    const TranscriptWindowModel &m_model;
    // The lines of the transcript while there are no segments: where they begin, and where the last one ends.
    std::vector<qsizetype> m_starts;
    qsizetype m_end = 0;
    int m_count = 0;
    int m_active = -1;
};

} // namespace sorvanta
