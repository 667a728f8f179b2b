#pragma once

#include "app/detail_view.h"
#include "app/sidebar_item_type.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QSettings>
#include <QUrl>
#include <QVariantList>
#include <QtQml/qqml.h>

#include <memory>
#include <optional>

namespace sorvanta {

/// The content of the window: the gate of the agreement, and behind it the sidebar and the screens. Main thread only.
class ContentView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool hasAcceptedPolicies READ hasAcceptedPolicies NOTIFY hasAcceptedPoliciesChanged)
    Q_PROPERTY(sorvanta::DetailView *detail READ detail NOTIFY hasAcceptedPoliciesChanged)
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)
    Q_PROPERTY(int selectedIndex READ selectedIndex WRITE selectIndex NOTIFY selectedItemChanged)
    Q_PROPERTY(QString versionText READ version CONSTANT)
    Q_PROPERTY(QUrl privacyURL READ privacyAddress CONSTANT)
    Q_PROPERTY(QUrl termsURL READ termsAddress CONSTANT)
    Q_PROPERTY(QString supportText READ helpText CONSTANT)
    Q_PROPERTY(QString modelIssueText READ modelText CONSTANT)

public:
    /// @param panels must outlive the view
    /// @param resourceFolder where the engine lies
    ContentView(FilePanels &panels, const QString &resourceFolder, QObject *parent = nullptr);
    ~ContentView() override;

    /// Whether the user agreed, now or in an earlier run. Until then there are no screens and no folders.
    bool hasAcceptedPolicies() const { return m_detail != nullptr; }
    /// Stores the agreement for good and makes the screens.
    Q_INVOKABLE void acceptPolicies();

    /// The screens; null until the policies have been accepted.
    DetailView *detail() const { return m_detail.get(); }

    /// The rows of the sidebar, each with a `symbol` and a `label`.
    static QVariantList sections();

    /// The section shown, or none. Not stored: each run begins with the file screen.
    std::optional<SidebarItemType> selectedItem() const { return m_selectedItem; }
    void select(std::optional<SidebarItemType> item) { m_selectedItem = item; }
    /// The same as a row of the sidebar, -1 for none.
    int selectedIndex() const;
    void selectIndex(int index);

    static QString version();
    static QUrl privacyAddress();
    static QUrl termsAddress();
    static QString helpText();
    static QString modelText();

    /// Opens an address in the browser.
    Q_INVOKABLE void open(const QUrl &address) const;
    /// Ends the application.
    Q_INVOKABLE void quit() const;

    Q_SIGNAL void hasAcceptedPoliciesChanged();
    Q_SIGNAL void selectedItemChanged();

private:
    void makeScreens();

    FilePanels &m_panels;
    QString m_resourceFolder;
    QSettings m_userDefaults;
    std::unique_ptr<DetailView> m_detail;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ContentView, std::optional<SidebarItemType>, m_selectedItem,
                                         SidebarItemType::transcriptFromFile, &ContentView::selectedItemChanged)
};

} // namespace sorvanta
