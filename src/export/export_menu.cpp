#include "export/export_menu.h"

#include <utility>

namespace sorvanta {

namespace {

using State = ExportMenuState;
using Condition = ExportMenuEntry::Condition;

bool hasContent(const State &state)
{
    return state.hasContent;
}

bool hasSegments(const State &state)
{
    return state.hasSegments;
}

bool hasResults(const State &state)
{
    return state.hasResults;
}

bool anyResultHasContent(const State &state)
{
    return state.anyResultHasContent;
}

bool anyResultHasSegments(const State &state)
{
    return state.anyResultHasSegments;
}

bool isSubtitles(ExportFormat format)
{
    return format == ExportFormat::srt || format == ExportFormat::vtt;
}

Condition transcriptionCondition(ExportFormat format)
{
    return isSubtitles(format) || format == ExportFormat::csv ? hasSegments : nullptr;
}

Condition historyCondition(ExportFormat format)
{
    if (format == ExportFormat::txt)
        return nullptr;
    return isSubtitles(format) || format == ExportFormat::csv ? hasSegments : hasContent;
}

Condition exportAllCondition(ExportFormat format)
{
    return isSubtitles(format) ? anyResultHasSegments : anyResultHasContent;
}

QString noSymbol(ExportFormat)
{
    return {};
}

QString historySymbol(ExportFormat format)
{
    switch (format) {
    case ExportFormat::txt:
        return u"doc.plaintext"_qs;
    case ExportFormat::srt:
        return u"captions.bubble"_qs;
    case ExportFormat::vtt:
        return u"text.badge.plus"_qs;
    case ExportFormat::csv:
        return u"tablecells"_qs;
    case ExportFormat::docx:
        return u"doc.richtext"_qs;
    case ExportFormat::pdf:
        return u"doc.richtext.fill"_qs;
    case ExportFormat::markdown:
        return u"doc.text.magnifyingglass"_qs;
    case ExportFormat::html:
        return u"chevron.left.forwardslash.chevron.right"_qs;
    case ExportFormat::json:
        return u"curlybraces"_qs;
    }
    return {};
}

void addFormats(ExportMenu &menu, Condition (*condition)(ExportFormat), QString (*symbol)(ExportFormat),
                const OnFormat &onFormat)
{
    for (const ExportFormat format : allExportFormats) {
        menu.add(new ExportMenuEntry(
            menuLabel(format), symbol(format), condition(format), [onFormat, format] { onFormat(format); }, &menu));
    }
}

void addSubmenu(ExportMenu &menu, const QString &label, Condition (*condition)(ExportFormat), const OnFormat &onFormat)
{
    menu.add(new ExportMenuEntry(&menu));
    auto *const submenu = new ExportMenu(label, {}, nullptr);
    addFormats(*submenu, condition, noSymbol, onFormat);
    menu.add(new ExportMenuEntry(submenu, &menu));
}

OnFormat saving(ExportActions &actions)
{
    return [&actions](ExportFormat format) { actions.save(format); };
}

OnFormat downloading(ExportActions &actions)
{
    return [&actions](ExportFormat format) { actions.download(format); };
}

const QString exportLabel = u"Export"_qs;
const QString exportAllLabel = u"Export All"_qs;
const QString downloadLabel = u"Download to Downloads"_qs;

} // namespace

ExportMenuEntry::ExportMenuEntry(QObject *parent)
    : QObject(parent)
{
}

ExportMenuEntry::ExportMenuEntry(ExportMenu *submenu, QObject *parent)
    : QObject(parent)
    , m_label(submenu->label())
    , m_submenu(submenu)
{
    submenu->setParent(this);
}

ExportMenuEntry::ExportMenuEntry(QString label, QString symbol, Condition condition, std::function<void()> action,
                                 QObject *parent)
    : QObject(parent)
    , m_label(std::move(label))
    , m_symbol(std::move(symbol))
    , m_condition(condition)
    , m_action(std::move(action))
{
}

void ExportMenuEntry::choose() const
{
    if (m_action && m_isEnabled)
        m_action();
}

void ExportMenuEntry::apply(const ExportMenuState &state)
{
    m_isEnabled = !m_condition || m_condition(state);
    if (m_submenu)
        m_submenu->setState(state);
}

ExportMenu::ExportMenu(QString label, QString symbol, ExportMenuEntry::Condition condition, QObject *parent)
    : QObject(parent)
    , m_label(std::move(label))
    , m_symbol(std::move(symbol))
    , m_condition(condition)
{
    apply();
}

QVariantList ExportMenu::entryList() const
{
    QVariantList list;
    for (QObject *entry : m_entries)
        list << QVariant::fromValue(entry);
    return list;
}

void ExportMenu::add(ExportMenuEntry *entry)
{
    m_entries.append(entry);
    entry->apply(m_state);
}

void ExportMenu::setState(const ExportMenuState &state)
{
    if (state == m_state)
        return;
    m_state = state;
    apply();
}

void ExportMenu::apply()
{
    m_isEnabled = !m_condition || m_condition(m_state);
    for (QObject *entry : std::as_const(m_entries))
        static_cast<ExportMenuEntry *>(entry)->apply(m_state);
}

ExportMenu *newTranscriptionExportMenu(ExportActions &actions, QObject *parent)
{
    auto *const menu = new ExportMenu(exportLabel, {}, hasContent, parent);
    addFormats(*menu, transcriptionCondition, noSymbol, saving(actions));
    addSubmenu(*menu, downloadLabel, transcriptionCondition, downloading(actions));
    return menu;
}

ExportMenu *newBatchExportMenu(ExportActions &actions, const OnFormat &exportAll, QObject *parent)
{
    auto *const menu = new ExportMenu(exportLabel, {}, hasContent, parent);
    addFormats(*menu, transcriptionCondition, noSymbol, saving(actions));
    addSubmenu(*menu, exportAllLabel, exportAllCondition, exportAll);
    addSubmenu(*menu, downloadLabel, transcriptionCondition, downloading(actions));
    return menu;
}

ExportMenu *newExportAllMenu(const OnFormat &exportAll, QObject *parent)
{
    auto *const menu = new ExportMenu(exportAllLabel, {}, hasResults, parent);
    addFormats(*menu, exportAllCondition, noSymbol, exportAll);
    return menu;
}

ExportMenu *newHistoryExportMenu(ExportActions &actions, QObject *parent)
{
    auto *const menu = new ExportMenu(exportLabel, u"square.and.arrow.down"_qs, hasContent, parent);
    addFormats(*menu, historyCondition, historySymbol, saving(actions));
    addSubmenu(*menu, downloadLabel, historyCondition, downloading(actions));
    return menu;
}

} // namespace sorvanta
