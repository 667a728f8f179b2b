#pragma once

#include <QAbstractListModel>
#include <QString>

#include <functional>
#include <vector>

namespace sorvanta {

/// The lines of a log as rows, however long the log is: only where rows begin is kept. A line that is too long for one
/// row goes on in the next. Main thread only.
class LogLinesModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { TextRole = Qt::UserRole };

    /// The longest row, in UTF-16 units.
    static constexpr qsizetype longestRow = 2000;

    /// @param log the whole log. It is asked for, and not held, so that whoever appends to it need not copy it.
    explicit LogLinesModel(std::function<const QString &()> log, QObject *parent = nullptr);

    int count() const { return m_count; }
    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Reads on where the log only grew since the last call, and from the start where it is shorter.
    void update();

    /// Reads the log from the start.
    void reset();

    /// Has no rows until the next call of the others.
    void clear();

Q_SIGNALS:
    void countChanged();

private:
    void forget();
    void read();
    /// The number of rows with something in them or behind them.
    int shownRows() const;

    std::function<const QString &()> m_log;
    std::vector<qsizetype> m_starts{0}; // of the rows; behind a final line break one more
    qsizetype m_end = 0; // how far the log was read
    int m_count = 0;
};

} // namespace sorvanta
