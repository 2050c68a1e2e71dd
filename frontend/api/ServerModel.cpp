#include "ServerModel.h"

#include <QRandomGenerator>
#include <algorithm>

namespace quorvane {

namespace {

constexpr qsizetype fieldsNeeded = 5;

const QString &unknownCountry() {
    static const QString name = QStringLiteral("Unknown Country");
    return name;
}

QString unknownCode() {
    return QStringLiteral("xx");
}

/// Texts of an answer are never null, even when empty.
QString nonNull(QStringView text) {
    return text.isEmpty() ? QStringLiteral("") : text.toString();
}

QrvVpnDataPointer parseServer(const QString &line) {
    const qsizetype bar = line.indexOf(u'|');
    if (bar < 0) {
        return nullptr;
    }
    // The whole line is split, including the addresses behind the bar.
    const QStringList fields = line.split(u',');
    if (fields.size() < fieldsNeeded) {
        return nullptr;
    }
    auto data = std::make_shared<QrvVpnData>();
    data->ipAdressArray = line.sliced(bar + 1).split(u',');
    data->filteredIpAdressArray = data->ipAdressArray;
    data->ipAdress =
        nonNull(data->ipAdressArray.at(QRandomGenerator::global()->bounded(data->ipAdressArray.size())));
    data->cityCountry = fields.at(4) + QChar(u' ') + fields.at(1);
    data->codeName = fields.at(2) + QChar(u' ') + fields.at(3);
    data->countryCode = nonNull(fields.at(3));
    return data;
}

} // namespace

QrvVpnDataList ServerModel::parseServers(const QStringList &lines, const QString &user,
                                         const QString &password, const QString &key) {
    QrvVpnDataList groups;
    groups.reserve(lines.size());
    for (const QString &line : lines) {
        if (QrvVpnDataPointer data = parseServer(line)) {
            data->user = user;
            data->pass = password;
            data->key = key;
            groups.append(std::move(data));
        }
    }
    std::sort(groups.begin(), groups.end(), [](const QrvVpnDataPointer &a, const QrvVpnDataPointer &b) {
        return a->cityCountry < b->cityCountry;
    });
    return groups;
}

void ServerModel::setLocations(const QString &value) {
    clearLocations();
    m_locationsKnown = true;
    for (const QString &piece : value.split(u'|')) {
        const QStringList fields = piece.split(u';');
        if (fields.size() != 4) {
            continue;
        }
        addCountry(fields.at(0));
        m_arrayLocations.append(QrvLocation::location(nonNull(fields.at(2)), nonNull(fields.at(0)),
                                                      nonNull(fields.at(1)),
                                                      fields.at(3) == QLatin1String("1")));
    }
    std::stable_sort(
        m_arrayLocations.begin(), m_arrayLocations.end(),
        [](const QrvLocation &a, const QrvLocation &b) { return std::is_lt(a.compareLocations(b)); });
}

void ServerModel::clearLocations() {
    m_arrayLocations.clear();
    m_countryCodesListed.clear();
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
    if (m_countryCodesListed.contains(code)) {
        return;
    }
    m_countryCodesListed.insert(code);
    m_arrayLocations.append(QrvLocation::location(countryByCode(code), nonNull(code), QString(), false));
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

const QrvVpnData *ServerModel::groupForLabel(const QString &label) const {
    const auto found =
        std::find_if(m_servers.begin(), m_servers.end(), [&label](const QrvVpnDataPointer &group) {
            return label.startsWith(group->cityCountry);
        });
    return found == m_servers.end() ? nullptr : found->get();
}

QString ServerModel::getCountryByLocationForVPN(const QString &label) const {
    const QrvVpnData *group = groupForLabel(label);
    return group != nullptr ? group->countryCode : unknownCode();
}

QString ServerModel::getCodeByLocationForVPN(const QString &label) const {
    const QrvVpnData *group = groupForLabel(label);
    return group != nullptr ? group->codeName : QString();
}

QStringList ServerModel::serverFieldsWith(const QString &address) const {
    QString wanted = address;
    wanted.remove(u'\n');
    if (wanted.isEmpty()) {
        return {};
    }
    for (const QString &line : m_serverList) {
        if (line.contains(wanted)) {
            const QStringList fields = line.split(u',');
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
