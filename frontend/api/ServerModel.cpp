#include "ServerModel.h"

#include "frontend/support/UnicodeText.h"

#include <QByteArrayMatcher>
#include <QSet>
#include <algorithm>

namespace quorvane {

namespace {

const QString &unknownCountry() {
    static const QString name = QStringLiteral("Unknown Country");
    return name;
}

/// Texts of an answer are never null, even when empty.
QString nonNull(QStringView text) {
    return text.isEmpty() ? QStringLiteral("") : text.toString();
}

/// One name on purpose: every country has the same title.
QrvLocation countryEntry(const QString &code) {
    return QrvLocation::location(unknownCountry(), nonNull(code), QString(), false);
}

QString unknownCode() {
    return QStringLiteral("xx");
}

} // namespace

QrvVpnDataList ServerModel::parseServers(const ServerLines &lines, const QString &user,
                                         const QString &password, const QString &key) {
    return {lines, user, password, key};
}

QrvLocationList ServerModel::parseLocations(const QString &value) {
    QrvLocationList list;
    QSet<QString> countries;
    for (const QString &piece : value.split(u'|')) {
        const QStringList fields = piece.split(u';');
        if (fields.size() != 4) {
            continue;
        }
        const QString code = nonNull(fields.at(0));
        if (!countries.contains(code)) {
            countries.insert(code);
            list.append(countryEntry(code));
        }
        list.append(QrvLocation::location(nonNull(fields.at(2)), code, nonNull(fields.at(1)),
                                          fields.at(3) == QLatin1String("1")));
    }
    std::stable_sort(list.begin(), list.end(), [](const QrvLocation &a, const QrvLocation &b) {
        return std::is_lt(a.compareLocations(b));
    });
    return list;
}

void ServerModel::setLocations(const QrvLocationList &locations) {
    m_arrayLocations = locations;
    m_locationsKnown = true;
}

void ServerModel::clearLocations() {
    m_arrayLocations.clear();
    m_locationsKnown = false;
}

void ServerModel::fillCountries() {
    // One entry on purpose: every country has the same title.
    m_countries.insert(QStringLiteral("XX"), unknownCountry());
}

QString ServerModel::countryByCode(const QString &code) {
    if (m_countries.isEmpty()) {
        fillCountries();
    }
    return m_countries.value(code, unknownCountry());
}

void ServerModel::addCountry(const QString &code) {
    if (std::none_of(m_arrayLocations.begin(), m_arrayLocations.end(),
                     [&code](const QrvLocation &entry) { return entry.countryCode == code; })) {
        m_arrayLocations.append(countryEntry(code));
    }
}

bool ServerModel::locationValid(const QrvLocation &location) const {
    return std::any_of(m_arrayLocations.begin(), m_arrayLocations.end(),
                       [&location](const QrvLocation &entry) {
                           return entry.title == location.title && entry.countryCode == location.countryCode;
                       });
}

const QrvLocation *ServerModel::locationWithTitle(const QString &title) const {
    const auto found = std::find_if(m_arrayLocations.begin(), m_arrayLocations.end(),
                                    [&title](const QrvLocation &entry) { return entry.title == title; });
    return found == m_arrayLocations.end() ? nullptr : &*found;
}

QString ServerModel::getCountryByLocation(const QString &title) const {
    const QrvLocation *entry = locationWithTitle(title);
    return entry != nullptr ? entry->countryCode : unknownCode();
}

QString ServerModel::getCodeByLocation(const QString &title) const {
    const QrvLocation *entry = locationWithTitle(title);
    return entry != nullptr ? entry->codeName : QString();
}

std::optional<qsizetype> ServerModel::groupForLabel(const QString &label) const {
    const QByteArray wanted = label.toUtf8();
    for (qsizetype i = 0; i < m_servers.size(); ++i) {
        if (wanted.startsWith(m_servers.label(i))) {
            return i;
        }
    }
    return std::nullopt;
}

QString ServerModel::getCountryByLocationForVPN(const QString &label) const {
    const auto group = groupForLabel(label);
    return group ? UnicodeText::decoded(m_servers.countryCode(*group)) : unknownCode();
}

QString ServerModel::getCodeByLocationForVPN(const QString &label) const {
    const auto group = groupForLabel(label);
    return group ? m_servers.codeName(*group) : QString();
}

QStringList ServerModel::serverFieldsWith(const QString &address) const {
    QString wanted = address;
    wanted.remove(u'\n');
    if (wanted.isEmpty()) {
        return {};
    }
    const QByteArrayMatcher matcher(wanted.toUtf8());
    for (qsizetype i = 0; i < m_serverList.size(); ++i) {
        const QByteArrayView line = m_serverList.at(i);
        if (matcher.indexIn(line.data(), line.size()) >= 0) {
            const QStringList fields = UnicodeText::decoded(line).split(u',');
            if (fields.size() > 3) {
                return fields;
            }
        }
    }
    return {};
}

QString ServerModel::getLocationByIP(const QString &address) const {
    const QStringList fields = serverFieldsWith(address);
    return fields.isEmpty() ? QString() : QString(fields.at(1) + QChar(u' ') + fields.at(2));
}

QString ServerModel::getCodeByIP(const QString &address) const {
    const QStringList fields = serverFieldsWith(address);
    return fields.isEmpty() ? QString() : nonNull(fields.at(3));
}

} // namespace quorvane
