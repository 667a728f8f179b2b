#pragma once

#include "shown_texts.h"
#include "ui/support/ui_test.h"

#include <QTest>

#include <initializer_list>

namespace sorvanta {

/// The test of a page, which is taken through its states and looked at in each.
template<typename PageTest>
class PageStates : public PageTest {
protected:
    /// The labels of the shown ones of these buttons; of those that are off in brackets.
    QString shownButtons(std::initializer_list<const char *> names) const
    {
        QStringList shown;
        for (const char *name : names) {
            if (this->isShown(name))
                shown << (this->isEnabled(name) ? this->text(name) : '(' + this->text(name) + ')');
        }
        return shown.join(", ");
    }
    QString ifShown(const QString &objectName) const
    {
        return this->isShown(objectName) ? this->text(objectName) : QString();
    }
    /// Sees that nothing overlaps, in the page's own size and a small one, and takes pictures, a dark one too.
    void lookAtAll(const QString &picture)
    {
        lookAt(picture);
        this->setDark(true);
        this->savePicture(picture + "-dark");
        this->setDark(false);
        this->window->resize(500, 480);
        this->root->setSize(QSizeF(500, 480));
        lookAt(picture + "-small");
    }

private:
    void lookAt(const QString &picture)
    {
        this->settle(); // the rows find their places
        expectThatNothingOverlaps(this->root);
        this->savePicture(picture);
        const double below = this->root->property("contentHeight").toDouble() - this->root->height();
        if (below <= 0)
            return;
        this->root->setProperty("contentY", below);
        expectThatNothingOverlaps(this->root);
        this->savePicture(picture + "-below");
        this->root->setProperty("contentY", 0);
    }
};

} // namespace sorvanta
