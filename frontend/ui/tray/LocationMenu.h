#pragma once

#include <QMenu>
#include <memory>
#include <vector>

namespace quorvane {

class LocationList;

/// The location list as a submenu of the tray's menu: "Random Location", then the locations with their flags,
/// the selected one checked. A long list has a submenu for each country. Main thread.
///
/// Entries are made when the menu, or the submenu of a country, is about to be shown, also for a panel that
/// shows the menu over the session bus. Until then the menu has "Random Location" alone, because some panels
/// do not open an empty one.
class LocationMenu final : public QMenu {
    Q_OBJECT

public:
    /// A list with more locations is grouped by country.
    static constexpr int longestUngrouped = 20;
    /// Further locations of one submenu are only in the window: a menu does not scroll through thousands.
    static constexpr int maximumOfCountry = 500;

    /// The list is not owned and must outlive the menu's use.
    explicit LocationMenu(LocationList &list);
    ~LocationMenu() override;

Q_SIGNALS:
    /// The user chose the entry with this id.
    void chosen(quint64 id);

private:
    struct Country {
        std::unique_ptr<QMenu> menu;
        std::vector<int> rows;
        bool isFilled = false;
    };

    void fill();
    void groupByCountry();
    void fillCountry(Country &country);
    void addEntry(QMenu &menu, int row);
    /// Checks the selected entry and no other.
    void showSelection();

    LocationList &m_list;
    bool m_isCurrent = false; // the menu has the list's present entries
    std::vector<std::unique_ptr<Country>> m_countries;
    std::vector<QAction *> m_entries; // of all filled menus
};

} // namespace quorvane
