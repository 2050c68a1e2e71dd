#include "LocationList.h"

#include "frontend/support/CountryNames.h"
#include "frontend/support/Translations.h"
#include "frontend/support/UnicodeText.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr qsizetype noGroup = -1;

quint64 nextId() {
    static quint64 last = 0;
    return ++last;
}

QSet<QString> codesOfFullLocations(const QrvLocationList &locations) {
    QSet<QString> codes;
    for (const QrvLocation &location : locations) {
        if (location.full) {
            codes.insert(location.codeName + u' ' + location.countryCode); // as in a group
        }
    }
    return codes;
}

} // namespace

LocationList::LocationList(QObject *parent) : QAbstractListModel(parent), m_rows{{nextId(), noGroup}} {}

int LocationList::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant LocationList::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return shownText(row);
    case Qt::ToolTipRole:
        return isFull(row) ? QVariant(tr("This location is full.")) : QVariant();
    case Qt::AccessibleTextRole:
        return isFull(row) ? QVariant(tr("%1, full").arg(shownText(row))) : QVariant();
    case TitleRole:
        return title(row);
    case FlagRole:
        return flag(row);
    case FullRole:
        return isFull(row);
    case EntryIdRole:
        return idAt(row);
    default:
        return {};
    }
}

LocationChoice::Entry LocationList::entryAt(int row) const {
    const qsizetype group = rowAt(row).group;
    return {idAt(row), title(row), group == noGroup ? nullptr : m_groups.at(group)};
}

bool LocationList::isAmerican(int row) const {
    const qsizetype group = rowAt(row).group;
    return group != noGroup && m_groups.countryCode(group) == QByteArrayView("US");
}

QString LocationList::title(int row) const {
    const qsizetype group = rowAt(row).group;
    return group == noGroup ? LocationChoice::randomTitle() : UnicodeText::decoded(m_groups.label(group));
}

QString LocationList::countryCode(int row) const {
    const qsizetype group = rowAt(row).group;
    return group == noGroup ? QStringLiteral("") : UnicodeText::decoded(m_groups.countryCode(group));
}

QString LocationList::flag(int row) const {
    return rowAt(row).group == noGroup ? QStringLiteral("xx") : countryCode(row).toLower();
}

bool LocationList::isFull(int row) const {
    const qsizetype group = rowAt(row).group;
    return group != noGroup && !m_fullCodes.isEmpty() && m_fullCodes.contains(m_groups.codeName(group));
}

QString LocationList::shownText(int row) const {
    if (rowAt(row).group == noGroup) {
        return tr("Random Location");
    }
    return shownTitle(title(row), countryCode(row));
}

QString LocationList::shownTitle(const QString &title, const QString &countryCode) {
    QString text = CountryNames::inTitle(title, countryCode, Translations::shown()).left(shownCharacters);
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        text.chop(1);
    }
    return text;
}

void LocationList::fill(const QrvVpnDataList &groups, const QStringList &discarded,
                        const QrvLocationList &locations) {
    if (groups.isEmpty()) {
        return;
    }
    beginResetModel();
    m_selectedItem.reset();
    m_groups = groups;
    m_groups.setDiscarded(QSet<QString>(discarded.begin(), discarded.end()));
    m_fullCodes = codesOfFullLocations(locations);
    m_rows.clear();
    m_rows.reserve(static_cast<std::size_t>(m_groups.size()) + 1);
    m_rows.push_back({nextId(), noGroup});
    for (qsizetype group = 0; group < m_groups.size(); ++group) {
        if (m_groups.isUsable(group)) {
            m_rows.push_back({nextId(), group});
        }
    }
    m_current = 0;
    endResetModel();
    Q_EMIT currentRowChanged(m_current);
}

void LocationList::setCurrentRow(int row) {
    if (row >= 0 && row < count() && row != m_current) {
        m_current = row;
        Q_EMIT currentRowChanged(row);
    }
}

std::optional<int> LocationList::rowWithId(quint64 id) const {
    // Ids grow from row to row.
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), id,
                                        [](const Row &row, quint64 wanted) { return row.id < wanted; });
    if (found == m_rows.end() || found->id != id) {
        return std::nullopt;
    }
    return static_cast<int>(found - m_rows.begin());
}

std::optional<int> LocationList::rowWithTitle(const QString &title, int from) const {
    const QByteArray wanted = title.toUtf8();
    for (int row = from; row < count(); ++row) {
        const qsizetype group = rowAt(row).group;
        if (group == noGroup ? title == LocationChoice::randomTitle() : m_groups.label(group) == wanted) {
            return row;
        }
    }
    return std::nullopt;
}

bool LocationList::selectId(quint64 id) {
    const auto row = rowWithId(id);
    if (row) {
        setCurrentRow(*row);
    }
    return row.has_value();
}

bool LocationList::selectTitle(const QString &title) {
    const auto row = rowWithTitle(title, 0);
    if (row) {
        setCurrentRow(*row);
        setCurrentAsSelectedItem();
    }
    return row.has_value();
}

void LocationList::selectAgain(const LocationChoice::Entry &entry) {
    const auto first = entry.data ? rowWithTitle(entry.title, 1) : std::nullopt;
    auto row = first;
    while (row && entryAt(*row).data->ipAdressArray.first() != entry.data->ipAdressArray.first()) {
        row = rowWithTitle(entry.title, *row + 1);
    }
    setCurrentRow(row.value_or(first.value_or(0)));
    setCurrentAsSelectedItem();
}

bool LocationList::selectFlag(const QString &flag) {
    for (int row = 0; row < count(); ++row) {
        if (this->flag(row) == flag) {
            setCurrentRow(row);
            return true;
        }
    }
    return false;
}

void LocationList::removeTitle(const QString &title) {
    const auto row = rowWithTitle(title, 1);
    if (!row) {
        return;
    }
    if (m_selectedItem == idAt(*row)) {
        m_selectedItem.reset();
    }
    beginRemoveRows({}, *row, *row);
    m_rows.erase(m_rows.begin() + *row);
    const bool moves = *row <= m_current;
    m_current -= moves ? 1 : 0;
    endRemoveRows();
    if (moves) {
        Q_EMIT currentRowChanged(m_current);
    }
}

std::optional<LocationChoice::Entry> LocationList::selectedItem() const {
    const auto row = m_selectedItem ? rowWithId(*m_selectedItem) : std::nullopt;
    return row ? std::optional(entryAt(*row)) : std::nullopt;
}

} // namespace quorvane
