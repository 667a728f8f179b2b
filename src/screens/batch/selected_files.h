#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QtQml/qqml.h>

namespace sorvanta {

/// The files of the next batch, in the order of adding, each once. Its rows are the few names that are shown; what is
/// added or taken away is announced as such. Main thread only.
class SelectedFiles : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY filesChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY filesChanged)
    Q_PROPERTY(QString moreText READ moreText NOTIFY filesChanged)

public:
    enum Role {
        NameRole = Qt::UserRole ///< "name", in one line
    };

    /// So many names are shown.
    static constexpr int mostShown = 5;

    using QAbstractListModel::QAbstractListModel;

    const QList<QUrl> &urls() const { return m_urls; }
    qsizetype count() const { return m_urls.size(); }
    bool isEmpty() const { return m_urls.isEmpty(); }

    /// Appends those that are new, in their order. @return whether there were any
    bool add(const QList<QUrl> &urls);
    void clear();

    /// "No files selected", "1 file ready", "2 files ready".
    QString countText() const;
    /// "…and 3 more" for what is not shown by name; empty if that is nothing.
    QString moreText() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void filesChanged();

private:
    int shownCount() const;

    QList<QUrl> m_urls;
    QSet<QUrl> m_known; // the same
};

} // namespace sorvanta
