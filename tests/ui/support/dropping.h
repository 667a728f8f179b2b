#pragma once

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QQuickWindow>
#include <QUrl>

#include <memory>

namespace sorvanta {

/// The test of a page, with a hand that drags over its window.
template<typename PageTest>
class Dropping : public PageTest {
protected:
    bool enter(const QMimeData &data, const QPoint &point)
    {
        QDragEnterEvent event(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(this->window.get(), &event);
        return event.isAccepted();
    }
    void leave()
    {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(this->window.get(), &event);
    }
    /// @return the action that was taken, Qt::IgnoreAction for a drop that was refused
    Qt::DropAction drop(const QMimeData &data, const QPoint &point)
    {
        QDropEvent event(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        event.ignore();
        QCoreApplication::sendEvent(this->window.get(), &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }
    Qt::DropAction enterAndDrop(const QMimeData &data, const QPoint &point)
    {
        if (!enter(data, point))
            return Qt::IgnoreAction;
        return drop(data, point);
    }
    static std::unique_ptr<QMimeData> files(const QStringList &paths)
    {
        auto data = std::make_unique<QMimeData>();
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls << QUrl::fromLocalFile(path);
        data->setUrls(urls);
        return data;
    }
};

} // namespace sorvanta
