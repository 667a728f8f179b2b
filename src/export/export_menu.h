#pragma once

#include "export/export_actions.h"
#include "export/export_format.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QString>
#include <QVariantList>

#include <functional>

namespace sorvanta {

/// What the enabling of export menus depends on.
struct ExportMenuState {
    bool hasContent = false; ///< the transcript has a text that can be exported
    bool hasSegments = false; ///< the transcript has timed lines
    bool hasResults = false; ///< a batch has results
    bool anyResultHasContent = false; ///< the text of one at least is not blank
    bool anyResultHasSegments = false;

    bool operator==(const ExportMenuState &) const = default;
};

class ExportMenu;

/// One entry of an export menu: a format, a divider or a submenu.
class ExportMenuEntry : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(bool isDivider READ isDivider CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *submenu READ submenu CONSTANT)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)

public:
    using Condition = bool (*)(const ExportMenuState &);

    /// A divider.
    explicit ExportMenuEntry(QObject *parent);
    /// An entry that opens `submenu`, which it owns.
    ExportMenuEntry(ExportMenu *submenu, QObject *parent);
    /// An entry that calls `action`.
    ExportMenuEntry(QString label, QString symbol, Condition condition, std::function<void()> action, QObject *parent);

    /// Empty for a divider.
    QString label() const { return m_label; }
    /// The name of the symbol before the label; empty if there is none.
    QString symbol() const { return m_symbol; }
    bool isDivider() const { return !m_action && !m_submenu; }
    ExportMenu *submenu() const { return m_submenu; }
    bool isEnabled() const { return m_isEnabled; }

    /// Does what the entry is there for, unless it is disabled.
    Q_INVOKABLE void choose() const;

    void apply(const ExportMenuState &state);

    Q_SIGNAL void isEnabledChanged();

private:
    QString m_label;
    QString m_symbol;
    Condition m_condition = nullptr; // none: always enabled
    std::function<void()> m_action;
    ExportMenu *m_submenu = nullptr;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ExportMenuEntry, bool, m_isEnabled, true, &ExportMenuEntry::isEnabledChanged)
};

/// A menu of exports as a screen shows it. Main thread only.
class ExportMenu : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(QVariantList entries READ entryList CONSTANT)
    Q_PROPERTY(bool isEnabled READ isEnabled NOTIFY isEnabledChanged)

public:
    /// @param condition of the menu as a whole; none for a menu that can always be opened
    ExportMenu(QString label, QString symbol, ExportMenuEntry::Condition condition, QObject *parent = nullptr);

    QString label() const { return m_label; }
    /// The name of the symbol beside the label; empty if there is none.
    QString symbol() const { return m_symbol; }
    /// The entries in order; each is an ExportMenuEntry.
    const QObjectList &entries() const { return m_entries; }
    QVariantList entryList() const;
    bool isEnabled() const { return m_isEnabled; }

    void add(ExportMenuEntry *entry);

    /// Enables what the state allows. Cheap where nothing changed.
    void setState(const ExportMenuState &state);

    Q_SIGNAL void isEnabledChanged();

private:
    void apply();

    QString m_label;
    QString m_symbol;
    ExportMenuEntry::Condition m_condition;
    QObjectList m_entries;
    ExportMenuState m_state;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ExportMenu, bool, m_isEnabled, true, &ExportMenu::isEnabledChanged)
};

/// What is done with a format that was chosen.
using OnFormat = std::function<void(ExportFormat)>;

// The menus of the screens. What they are given outlives them.

/// The menu of the file, microphone and meeting screens.
ExportMenu *newTranscriptionExportMenu(ExportActions &actions, QObject *parent);

/// The menu of the batch screen.
ExportMenu *newBatchExportMenu(ExportActions &actions, const OnFormat &exportAll, QObject *parent);

/// The menu "Export All" above the results of a batch.
ExportMenu *newExportAllMenu(const OnFormat &exportAll, QObject *parent);

/// The menu of the history; its `hasContent` is canExport() and its `hasSegments` hasTimestamps() of the entry.
ExportMenu *newHistoryExportMenu(ExportActions &actions, QObject *parent);

} // namespace sorvanta
