#pragma once

#include "QrvLocation.h"
#include "QrvVpnDataList.h"
#include "ServerLines.h"

#include <QHash>
#include <optional>

namespace quorvane {

/// The servers, locations and countries of the service's last answers, and the look-ups in them. Main thread,
/// except for the parsing. Sends nothing.
class ServerModel {
public:
    /// Builds sorted groups from raw server lines. Lines without "|" or with fewer than five fields are
    /// left out. A null user or password stays null in every group. Any thread.
    [[nodiscard]] static QrvVpnDataList parseServers(const ServerLines &lines, const QString &user,
                                                     const QString &password, const QString &key);

    /// Replaces the raw lines that the look-ups by address search.
    void setServerList(const ServerLines &serverList) { m_serverList = serverList; }

    /// Replaces the parsed groups that the look-ups by label search.
    void setServers(const QrvVpnDataList &servers) { m_servers = servers; }

    /// The location list of an answer's "LOCATIONS" value, sorted. Any thread.
    [[nodiscard]] static QrvLocationList parseLocations(const QString &value);

    /// Rebuilds the location list from the answer's "LOCATIONS" value.
    void setLocations(const QString &value) { setLocations(parseLocations(value)); }

    void setLocations(const QrvLocationList &locations);
    void clearLocations();

    [[nodiscard]] bool isServerListValid() const { return !m_serverList.isEmpty(); }

    [[nodiscard]] bool hasLocations() const { return m_locationsKnown; }

    [[nodiscard]] const QrvLocationList &locations() const { return m_arrayLocations; }

    [[nodiscard]] const QrvVpnDataList &groups() const { return m_servers; }

    void fillCountries();
    [[nodiscard]] QString countryByCode(const QString &code);
    void addCountry(const QString &code);
    [[nodiscard]] bool locationValid(const QrvLocation &location) const;
    [[nodiscard]] QString getCountryByLocation(const QString &title) const;
    [[nodiscard]] QString getCodeByLocation(const QString &title) const;
    [[nodiscard]] QString getCountryByLocationForVPN(const QString &label) const;
    [[nodiscard]] QString getCodeByLocationForVPN(const QString &label) const;
    [[nodiscard]] QString getLocationByIP(const QString &address) const;
    [[nodiscard]] QString getCodeByIP(const QString &address) const;

private:
    [[nodiscard]] const QrvLocation *locationWithTitle(const QString &title) const;
    [[nodiscard]] std::optional<qsizetype> groupForLabel(const QString &label) const;
    [[nodiscard]] QStringList serverFieldsWith(const QString &address) const;

    ServerLines m_serverList;
    QrvVpnDataList m_servers;
    QrvLocationList m_arrayLocations;
    bool m_locationsKnown = false;
    QHash<QString, QString> m_countries;
};

} // namespace quorvane
