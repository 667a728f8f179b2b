#include "app/content_view.h"

#include "app/fixed_addresses.h"
#include "app/support_text.h"
#include "app/version_text.h"
#include "platform/build_configuration.h"
#include "platform/desktop/desktop.h"

#include <QCoreApplication>
#include <QVariantMap>

namespace sorvanta {

namespace {

const QString acceptedKey = QStringLiteral("hasAcceptedPolicies");

} // namespace

ContentView::ContentView(FilePanels &panels, const QString &resourceFolder, QObject *parent)
    : QObject(parent)
    , m_panels(panels)
    , m_resourceFolder(resourceFolder)
    , m_userDefaults(QStringLiteral("Sorvanta"), QStringLiteral("Sorvanta"))
{
    if (m_userDefaults.value(acceptedKey, false).toBool())
        makeScreens();
}

ContentView::~ContentView() = default;

void ContentView::acceptPolicies()
{
    if (hasAcceptedPolicies())
        return;
    m_userDefaults.setValue(acceptedKey, true);
    m_userDefaults.sync();
    makeScreens();
    emit hasAcceptedPoliciesChanged();
}

void ContentView::makeScreens()
{
    m_detail = std::make_unique<DetailView>(m_panels, m_resourceFolder);
}

QVariantList ContentView::sections()
{
    QVariantList rows;
    for (const SidebarItem &item : sidebarItems)
        rows << QVariantMap{{QStringLiteral("symbol"), QString::fromLatin1(item.icon)},
                            {QStringLiteral("label"), QString::fromLatin1(item.label)}};
    return rows;
}

int ContentView::selectedIndex() const
{
    return selectedItem() ? static_cast<int>(*selectedItem()) : -1;
}

void ContentView::selectIndex(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= sidebarItems.size())
        select(std::nullopt);
    else
        select(sidebarItems[static_cast<std::size_t>(index)].type);
}

QString ContentView::version()
{
    return versionText(buildConfiguration().shortVersion, buildConfiguration().buildVersion);
}

QUrl ContentView::privacyAddress()
{
    return privacyURL();
}

QUrl ContentView::termsAddress()
{
    return termsURL();
}

QString ContentView::helpText()
{
    return supportText(buildConfiguration().supportAddress);
}

QString ContentView::modelText()
{
    return modelIssueText();
}

void ContentView::open(const QUrl &address) const
{
    openAddress(address);
}

void ContentView::quit() const
{
    QCoreApplication::quit();
}

} // namespace sorvanta
