#include "LocationMenu.h"

#include "frontend/session/LocationList.h"
#include "frontend/support/CountryNames.h"
#include "frontend/support/Translations.h"
#include "frontend/ui/shared/Images.h"

#include <QHash>
#include <QLocale>
#include <algorithm>

namespace quorvane {

namespace {

/// Menus take "&" for the mark of a mnemonic.
QString plain(QString text) {
    return text.replace(u'&', QStringLiteral("&&"));
}

bool isCountryCode(const QString &code) {
    return code.size() == 2 && std::all_of(code.begin(), code.end(), [](QChar c) {
               return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
           });
}

QString countryName(const QString &code) {
    const QLocale shown = Translations::shown();
    if (const QString name = CountryNames::ofCode(code, shown);
        shown.language() != QLocale::C && !name.isEmpty()) {
        return name;
    }
    const QLocale::Territory territory = QLocale::codeToTerritory(code);
    return territory == QLocale::AnyTerritory ? code : QLocale::territoryToString(territory);
}

} // namespace

LocationMenu::LocationMenu(LocationList &list) : m_list(list) {
    setTitle(tr("Location"));
    addEntry(*this, 0);
    showSelection();
    connect(this, &QMenu::aboutToShow, this, &LocationMenu::fill);
    const auto outdated = [this] {
        m_isCurrent = false;
    };
    connect(&list, &LocationList::modelReset, this, outdated);
    connect(&list, &LocationList::rowsRemoved, this, outdated);
    connect(&list, &LocationList::currentRowChanged, this, &LocationMenu::showSelection);
}

LocationMenu::~LocationMenu() = default;

void LocationMenu::addEntry(QMenu &menu, int row) {
    const QModelIndex index = m_list.index(row);
    const QVariant full = index.data(Qt::AccessibleTextRole);
    const QString text = full.isValid() ? full.toString() : m_list.shownText(row);
    QAction *entry = menu.addAction(Images::icon(m_list.flag(row)), plain(text));
    const quint64 id = m_list.idAt(row);
    entry->setCheckable(true);
    entry->setData(id);
    connect(entry, &QAction::triggered, this, [this, id] {
        showSelection(); // the click switched the check mark
        Q_EMIT chosen(id);
    });
    m_entries.push_back(entry);
}

void LocationMenu::showSelection() {
    const quint64 selected = m_list.idAt(m_list.currentRow());
    for (QAction *entry : m_entries) {
        entry->setChecked(entry->data().toULongLong() == selected);
    }
}

void LocationMenu::fill() {
    if (m_isCurrent) {
        return;
    }
    m_isCurrent = true;
    m_entries.clear();
    clear();
    m_countries.clear();
    addEntry(*this, 0);
    if (m_list.count() > 1) {
        addSeparator();
    }
    if (m_list.count() - 1 > longestUngrouped) {
        groupByCountry();
    } else {
        for (int row = 1; row < m_list.count(); ++row) {
            addEntry(*this, row);
        }
    }
    showSelection();
}

void LocationMenu::groupByCountry() {
    QHash<QString, Country *> byCode;
    for (int row = 1; row < m_list.count(); ++row) {
        const QString sent = m_list.countryCode(row);
        const QString code = isCountryCode(sent) ? sent.toUpper() : QString();
        Country *&country = byCode[code];
        if (country == nullptr) {
            m_countries.push_back(std::make_unique<Country>());
            country = m_countries.back().get();
            country->menu = std::make_unique<QMenu>(code.isEmpty() ? tr("Other") : countryName(code));
            country->menu->setIcon(Images::icon(code.toLower()));
            connect(country->menu.get(), &QMenu::aboutToShow, this,
                    [this, country] { fillCountry(*country); });
            addMenu(country->menu.get());
        }
        country->rows.push_back(row);
    }
}

void LocationMenu::fillCountry(Country &country) {
    if (country.isFilled || !m_isCurrent) {
        return;
    }
    country.isFilled = true;
    const auto shown = std::min(country.rows.size(), static_cast<std::size_t>(maximumOfCountry));
    for (std::size_t i = 0; i < shown; ++i) {
        addEntry(*country.menu, country.rows[i]);
    }
    if (shown < country.rows.size()) {
        country.menu->addAction(tr("More locations are in the window"))->setEnabled(false);
    }
    showSelection();
}

} // namespace quorvane
