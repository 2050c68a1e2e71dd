#include "Fuzz.h"
#include "frontend/api/ServerModel.h"

#include <algorithm>

using namespace quorvane;

namespace {

const QString user = QStringLiteral("user");
const QString key = QStringLiteral("key");

/// The content of a line, parsed in another way than in the program; an empty list when it is not a record.
QStringList expectedRecord(const QString &line) {
    const QStringList fields = line.split(u',');
    const qsizetype bar = line.indexOf(u'|');
    if (bar < 0 || fields.size() < 5) {
        return {};
    }
    return {fields[4] + QStringLiteral(" ") + fields[1], fields[2] + QStringLiteral(" ") + fields[3],
            fields[3], line.mid(bar + 1)};
}

void checkGroup(const QrvVpnData &group) {
    must(group.ipAdressArray.contains(group.ipAdress), "the chosen address is one of the group's");
    must(!group.ipAdress.isNull(), "the chosen address is not null");
    must(group.filteredIpAdressArray == group.ipAdressArray, "the filtered copy is complete at first");
    must(group.user == user && group.key == key, "credentials are passed on");
    must(group.pass.isNull(), "a null password stays null");
}

void checkRecords(const QStringList &lines, const QrvVpnDataList &groups) {
    QList<QStringList> expected;
    for (const QString &line : lines) {
        if (QStringList record = expectedRecord(line); !record.isEmpty()) {
            expected.append(std::move(record));
        }
    }
    QList<QStringList> found;
    for (const QrvVpnDataPointer &group : groups) {
        checkGroup(*group);
        found.append(
            {group->cityCountry, group->codeName, group->countryCode, group->ipAdressArray.join(u',')});
    }
    must(std::is_sorted(groups.begin(), groups.end(),
                        [](const auto &a, const auto &b) { return a->cityCountry < b->cityCountry; }),
         "groups are sorted by their label");
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    must(found == expected, "every complete line makes its group, and no other line does");
}

void checkLabels(const ServerModel &model) {
    for (const QrvVpnDataPointer &group : model.groups()) {
        const QString label = group->cityCountry + QStringLiteral(" more");
        const QString country = model.getCountryByLocationForVPN(label);
        const QString code = model.getCodeByLocationForVPN(label);
        const bool known = std::any_of(model.groups().begin(), model.groups().end(), [&](const auto &other) {
            return label.startsWith(other->cityCountry) && other->countryCode == country &&
                   other->codeName == code;
        });
        must(known, "a label that begins like a group's has the country and code of such a group");
    }
    const QString unknownLabel = QStringLiteral("\uE000");
    const bool emptyLabel = std::any_of(model.groups().begin(), model.groups().end(), [&](const auto &group) {
        return unknownLabel.startsWith(group->cityCountry);
    });
    if (!emptyLabel) {
        must(model.getCountryByLocationForVPN(unknownLabel) == QStringLiteral("xx"),
             "an unknown label has no flag");
        must(model.getCodeByLocationForVPN(unknownLabel).isNull(), "an unknown label has no code");
    }
}

/// Up to seven units from the end of the line; half a character is no part of a text from the network.
QString endOf(const QString &line) {
    const QString end = line.right(7);
    return !end.isEmpty() && end.front().isLowSurrogate() ? end.sliced(1) : end;
}

void checkAddress(const ServerModel &model, const QStringList &lines, const QString &address) {
    const bool listed =
        !address.isEmpty() && std::any_of(lines.begin(), lines.end(), [&](const QString &line) {
            return line.count(u',') > 2 && line.contains(address);
        });
    const QString location = model.getLocationByIP(address);
    const QString code = model.getCodeByIP(address);
    must(location.isNull() != listed && code.isNull() != listed,
         "an address is found when a line contains it");
    must(model.getLocationByIP(address + QChar(u'\n')) == location, "a line feed at the end changes nothing");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QStringList lines = textOf(bytes).split(u'\n');
    const QrvVpnDataList groups = ServerModel::parseServers(ServerLines(lines), user, QString(), key);
    checkRecords(lines, groups);
    ServerModel model;
    must(!model.isServerListValid(), "a new model has no list");
    model.setServerList(ServerLines(lines));
    model.setServers(groups);
    must(model.isServerListValid(), "a list of lines is a valid list");
    checkLabels(model);
    checkAddress(model, lines, QString());
    checkAddress(model, lines, endOf(lines.first()));
    for (const QrvVpnDataPointer &group : groups) {
        checkAddress(model, lines, group->ipAdress);
    }
}
