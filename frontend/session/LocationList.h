#pragma once

#include "LocationChoice.h"
#include "frontend/api/QrvLocation.h"
#include "frontend/api/QrvVpnDataList.h"

#include <QAbstractListModel>
#include <QSet>
#include <vector>

namespace quorvane {

/// The list of locations and the choice in it. Row 0 is "Random Location"; one row for each usable server
/// group follows, in the groups' order. Views show it and report what the user chose. Main thread.
class LocationList final : public QAbstractListModel, public LocationChoice::Locations {
    Q_OBJECT

public:
    /// Qt::DisplayRole, Qt::ToolTipRole and Qt::AccessibleTextRole are texts for the user; a full location
    /// has the latter two.
    enum Role {
        TitleRole = Qt::UserRole + 1, ///< QString, as the service sent it: identifies the row for the user
        FlagRole,   ///< QString: the country code in lower case, the name of the flag's image
        FullRole,   ///< bool
        EntryIdRole ///< quint64
    };

    /// Characters of a title that are shown.
    static constexpr qsizetype shownCharacters = 200;

    /// The title with the country of this code in the user's language, and not too long to be shown.
    [[nodiscard]] static QString shownTitle(const QString &title, const QString &countryCode);

    explicit LocationList(QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

    // LocationChoice::Locations
    [[nodiscard]] int count() const override { return static_cast<int>(m_rows.size()); }

    /// No two entries of a run have the same id; a rebuilt list consists of new entries.
    [[nodiscard]] quint64 idAt(int row) const override { return rowAt(row).id; }

    [[nodiscard]] LocationChoice::Entry entryAt(int row) const override;
    [[nodiscard]] bool isAmerican(int row) const override;

    [[nodiscard]] QString title(int row) const;
    [[nodiscard]] QString flag(int row) const;
    [[nodiscard]] bool isFull(int row) const;
    /// The group's country code as the service sent it; empty for row 0.
    [[nodiscard]] QString countryCode(int row) const;
    /// The title as it is shown: row 0 and the country in the user's language, and not too long.
    [[nodiscard]] QString shownText(int row) const;

    /// Replaces the rows by new ones for the groups that have an address that is not discarded, and selects
    /// row 0; no item is selected by title. Filters the groups' addresses. A location of the second list that
    /// is full marks its group. An empty list of groups changes nothing.
    void fill(const QrvVpnDataList &groups, const QStringList &discarded, const QrvLocationList &locations);

    [[nodiscard]] int currentRow() const { return m_current; }

    /// Rows that do not exist are ignored.
    void setCurrentRow(int row);
    /// Selects the entry with this id. False if there is none.
    bool selectId(quint64 id);
    /// Selects the first row with exactly this title and makes it the selected item. False if there is none.
    bool selectTitle(const QString &title);
    /// Selects the location of an earlier list: the row with its title and its group's first address, else
    /// the first with its title, else "Random Location".
    void selectAgain(const LocationChoice::Entry &entry);
    /// Selects the first row with the flag; the selected item stays. False if there is none.
    bool selectFlag(const QString &flag);
    /// Removes the first group's row with this title, if there is one. If it is selected, the row before it
    /// becomes selected.
    void removeTitle(const QString &title);

    /// The entry last selected by title or by the user; absent after a rebuild and when it is removed.
    [[nodiscard]] std::optional<LocationChoice::Entry> selectedItem() const;

    /// The current row becomes the selected item.
    void setCurrentAsSelectedItem() { m_selectedItem = idAt(m_current); }

Q_SIGNALS:
    /// Another row is selected, or the selected row has another number.
    void currentRowChanged(int row);

private:
    struct Row {
        quint64 id;
        qsizetype group; ///< in m_groups; -1 for "Random Location"
    };

    [[nodiscard]] const Row &rowAt(int row) const { return m_rows[static_cast<std::size_t>(row)]; }

    [[nodiscard]] std::optional<int> rowWithId(quint64 id) const;
    /// From the given row on.
    [[nodiscard]] std::optional<int> rowWithTitle(const QString &title, int from) const;

    QrvVpnDataList m_groups;
    std::vector<Row> m_rows;
    QSet<QString> m_fullCodes; // code names of groups
    int m_current = 0;
    std::optional<quint64> m_selectedItem;
};

} // namespace quorvane
