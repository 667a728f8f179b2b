#include "screens/history/filtered_entries.h"

#include "platform/date_text.h"
#include "platform/lower_case_form.h"
#include "platform/main_queue.h"
#include "platform/unicode_text.h"
#include "platform/worker.h"
#include "screens/history/history_texts.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace sorvanta {

namespace {

constexpr qsizetype longestShownPreview = 300;
constexpr std::size_t formsInOnePost = 500;
constexpr char border = '\xff'; // no text has this byte

QByteArray formOf(const QString &text, const QString &sourceLabel, const QString &model)
{
    // The short ones first: what is found in them spares the look at the long one.
    QByteArray form = lowerCaseForm(model) + border + lowerCaseForm(sourceLabel) + border + lowerCaseForm(text);
    form.squeeze(); // it grew piece by piece, and stays
    return form;
}

/// A stretch of rows that one list has and the other one has not.
struct Stretch {
    int first;
    int count;
};

/// The stretches of `rows` that are not in `others`; both ascend.
std::vector<Stretch> stretchesWithout(const std::vector<int> &others, const std::vector<int> &rows)
{
    std::vector<Stretch> stretches;
    auto other = others.begin();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        while (other != others.end() && *other < rows[i])
            ++other;
        if (other != others.end() && *other == rows[i])
            continue;
        const int place = static_cast<int>(i);
        if (!stretches.empty() && stretches.back().first + stretches.back().count == place)
            ++stretches.back().count;
        else
            stretches.push_back({place, 1});
    }
    return stretches;
}

/// From here on a view is quicker told of other contents than of each change.
constexpr std::size_t mostStretches = 30;

} // namespace

struct FilteredEntries::Unprepared {
    int row;
    QString text;
    QString sourceLabel;
    QString model;
};

struct FilteredEntries::Prepared {
    int row;
    QByteArray form;
};

FilteredEntries::FilteredEntries(HistoryListModel &source, QObject *parent)
    : QAbstractListModel(parent)
    , m_source(source)
    , m_generation(std::make_shared<std::atomic<int>>(0))
{
    connect(&source, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
        for (int row = first; row <= last; ++row)
            insertRow(row);
        prepare();
    });
    connect(&source, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this](const QModelIndex &, int first, int last) {
        for (int row = last; row >= first; --row)
            beginRemoval(row);
    });
    connect(&source, &QAbstractItemModel::rowsRemoved, this, [this](const QModelIndex &, int first, int last) {
        for (int row = last; row >= first; --row)
            endRemoval(row);
        prepare();
    });
    connect(&source, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
    connect(&source, &QAbstractItemModel::modelReset, this, [this] {
        reset();
        endResetModel();
        emit isEmptyChanged();
    });
    reset();
}

FilteredEntries::~FilteredEntries()
{
    ++*m_generation;
}

void FilteredEntries::setSearchText(const QString &searchText)
{
    const QStringView trimmed = trimmedOfWhitespaceAndNewlines(searchText);
    auto search = trimmed.isEmpty() ? nullptr : std::make_unique<LowerCaseSearch>(trimmed);
    const bool goesOn = search && m_search && search->form().contains(m_search->form());
    if (!goesOn) {
        for (Searched &searched : m_searched)
            searched.mayMatch = true;
    }
    m_search = std::move(search);
    replaceRows(matchingRows());
}

const TranscriptionHistoryEntry &FilteredEntries::entry(int row) const
{
    return m_source.entries()[m_rows[static_cast<std::size_t>(row)]];
}

int FilteredEntries::rowOf(const QString &id) const
{
    const auto found = std::ranges::find_if(m_rows, [&](int row) { return m_source.entries()[row].id == id; });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

bool FilteredEntries::isPrepared() const
{
    return std::ranges::none_of(m_searched, [](const Searched &searched) { return searched.form.isNull(); });
}

int FilteredEntries::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant FilteredEntries::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const TranscriptionHistoryEntry &shown = entry(index.row());
    switch (role) {
    case EntryIdRole:
        return shown.id;
    case TitleRole:
        return entryTitle(shown);
    case DateRole:
        return formattedDate(shown, shortDateText);
    case PreviewRole:
        return entryPreview(shown).left(longestShownPreview);
    case TagsRole:
        return tagList(shown);
    default:
        return {};
    }
}

QHash<int, QByteArray> FilteredEntries::roleNames() const
{
    return {{EntryIdRole, "entryId"},
            {TitleRole, "title"},
            {DateRole, "date"},
            {PreviewRole, "preview"},
            {TagsRole, "tags"}};
}

bool FilteredEntries::matches(int sourceRow)
{
    if (!m_search)
        return true;
    Searched &searched = m_searched[static_cast<std::size_t>(sourceRow)];
    if (!searched.mayMatch)
        return false;
    if (searched.form.isNull()) {
        const TranscriptionHistoryEntry &entry = m_source.entries()[sourceRow];
        searched.form = formOf(entry.text, entry.sourceLabel, entry.model);
    }
    const LowerCaseSearch::Found found = m_search->find(searched.form);
    searched.mayMatch = found != LowerCaseSearch::Found::Nowhere;
    return found == LowerCaseSearch::Found::Whole;
}

FilteredEntries::Rows FilteredEntries::matchingRows()
{
    Rows rows;
    for (int row = 0; row < static_cast<int>(m_searched.size()); ++row) {
        if (matches(row))
            rows.push_back(row);
    }
    return rows;
}

void FilteredEntries::replaceRows(Rows rows)
{
    const auto removed = stretchesWithout(rows, m_rows);
    const auto inserted = stretchesWithout(m_rows, rows);
    if (removed.empty() && inserted.empty())
        return;
    if (removed.size() + inserted.size() > mostStretches) {
        overwriteRows(std::move(rows));
    } else {
        for (auto stretch = removed.rbegin(); stretch != removed.rend(); ++stretch) {
            beginRemoveRows({}, stretch->first, stretch->first + stretch->count - 1);
            const auto first = m_rows.begin() + stretch->first;
            m_rows.erase(first, first + stretch->count);
            endRemoveRows();
        }
        for (const Stretch &stretch : inserted) {
            beginInsertRows({}, stretch.first, stretch.first + stretch.count - 1);
            const auto first = rows.begin() + stretch.first;
            m_rows.insert(m_rows.begin() + stretch.first, first, first + stretch.count);
            endInsertRows();
        }
    }
    emit isEmptyChanged();
}

/// Announces other contents of the rows that both lists have, so that a view need not make them anew, and what is more
/// or less at the end.
void FilteredEntries::overwriteRows(Rows rows)
{
    const auto before = count();
    const auto after = static_cast<int>(rows.size());
    const int kept = std::min(before, after);
    if (before > kept) {
        beginRemoveRows({}, kept, before - 1);
        m_rows.resize(rows.size());
        endRemoveRows();
    }
    std::copy_n(rows.begin(), kept, m_rows.begin());
    if (kept > 0)
        emit dataChanged(index(0), index(kept - 1));
    if (after > kept) {
        beginInsertRows({}, kept, after - 1);
        m_rows = std::move(rows);
        endInsertRows();
    }
}

/// Has a worker make the copies that are missing.
void FilteredEntries::prepare()
{
    const int generation = ++*m_generation;
    std::vector<Unprepared> missing;
    for (int row = 0; row < static_cast<int>(m_searched.size()); ++row) {
        const TranscriptionHistoryEntry &entry = m_source.entries()[row];
        if (m_searched[static_cast<std::size_t>(row)].form.isNull())
            missing.push_back({row, entry.text, entry.sourceLabel, entry.model});
    }
    if (missing.empty())
        return;
    runOnWorker([self = QPointer(this), generation, current = m_generation, missing = std::move(missing)] {
        std::vector<Prepared> forms;
        for (const Unprepared &entry : missing) {
            if (*current != generation || isQuitting())
                return;
            forms.push_back({entry.row, formOf(entry.text, entry.sourceLabel, entry.model)});
            if (forms.size() < formsInOnePost && &entry != &missing.back())
                continue;
            postToMain([self, generation, forms = std::exchange(forms, {})] {
                if (self)
                    self->takeForms(generation, forms);
            });
        }
    });
}

void FilteredEntries::takeForms(int generation, const std::vector<Prepared> &forms)
{
    if (generation != *m_generation)
        return;
    for (const Prepared &prepared : forms)
        m_searched[static_cast<std::size_t>(prepared.row)].form = prepared.form;
}

void FilteredEntries::insertRow(int sourceRow)
{
    const auto place = std::ranges::lower_bound(m_rows, sourceRow);
    std::for_each(place, m_rows.end(), [](int &row) { ++row; });
    m_searched.insert(m_searched.begin() + sourceRow, Searched());
    if (!matches(sourceRow))
        return;
    const auto row = static_cast<int>(place - m_rows.begin());
    beginInsertRows({}, row, row);
    m_rows.insert(place, sourceRow);
    endInsertRows();
    emit isEmptyChanged();
}

/// The source still has the row, so that the others can be looked at.
void FilteredEntries::beginRemoval(int sourceRow)
{
    const auto place = std::ranges::lower_bound(m_rows, sourceRow);
    if (place == m_rows.end() || *place != sourceRow)
        return;
    const auto row = static_cast<int>(place - m_rows.begin());
    beginRemoveRows({}, row, row);
    m_rows.erase(place);
    endRemoveRows();
    emit isEmptyChanged();
}

void FilteredEntries::endRemoval(int sourceRow)
{
    m_searched.erase(m_searched.begin() + sourceRow);
    std::for_each(std::ranges::lower_bound(m_rows, sourceRow), m_rows.end(), [](int &row) { --row; });
}

void FilteredEntries::reset()
{
    m_searched.assign(static_cast<std::size_t>(m_source.entries().size()), Searched());
    m_rows = matchingRows();
    prepare();
}

} // namespace sorvanta
