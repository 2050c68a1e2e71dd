#include "QrvVpnDataList.h"

#include "LabelOrder.h"
#include "ServerLines.h"
#include "frontend/support/UnicodeText.h"

#include <QHash>
#include <QRandomGenerator>
#include <array>
#include <optional>
#include <vector>

namespace quorvane {

namespace {

/// The first five fields of a line. The whole line is split, including the addresses behind the bar.
using Fields = std::array<QByteArrayView, 5>;

std::optional<Fields> fieldsOf(QByteArrayView line) {
    Fields fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const qsizetype comma = line.indexOf(',');
        if (comma < 0) {
            fields[i] = line;
            return i + 1 == fields.size() ? std::optional(fields) : std::nullopt;
        }
        fields[i] = line.first(comma);
        line = line.sliced(comma + 1);
    }
    return fields;
}

QByteArrayView addressesOf(QByteArrayView line) {
    return line.sliced(line.indexOf('|') + 1);
}

} // namespace

struct QrvVpnDataList::Groups {
    struct Record {
        quint32 line;
        quint32 labelBegin; // in labels
        quint32 labelSize;
    };

    void readLines();
    [[nodiscard]] QrvVpnDataPointer make(const Record &record) const;

    [[nodiscard]] QByteArrayView labelOf(const Record &record) const {
        return QByteArrayView(labels).sliced(record.labelBegin, record.labelSize);
    }

    [[nodiscard]] Fields fieldsAt(qsizetype index) const {
        return fieldsOf(lines.at(records[static_cast<std::size_t>(index)].line)).value_or(Fields());
    }

    void filter(QrvVpnData &data) const {
        data.filteredIpAdressArray = data.ipAdressArray;
        if (!discarded.isEmpty()) {
            data.filteredIpAdressArray.removeIf(
                [this](const QString &address) { return discarded.contains(address.toUtf8()); });
        }
    }

    ServerLines lines;
    QString user;
    QString password;
    QString key;
    QByteArray labels;
    std::vector<Record> records; // sorted by label
    QSet<QByteArray> discarded;
    QHash<qsizetype, QrvVpnDataPointer> made;
};

void QrvVpnDataList::Groups::readLines() {
    std::vector<Record> inOrder;
    inOrder.reserve(static_cast<std::size_t>(lines.size()));
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QByteArrayView line = lines.at(i);
        if (line.indexOf('|') < 0) {
            continue;
        }
        if (const auto fields = fieldsOf(line)) {
            const qsizetype begin = labels.size();
            labels.append((*fields)[4]);
            labels.append(' ');
            labels.append((*fields)[1]);
            inOrder.push_back({static_cast<quint32>(i), static_cast<quint32>(begin),
                               static_cast<quint32>(labels.size() - begin)});
        }
    }
    records.reserve(inOrder.size());
    for (const quint32 number : orderOfLabels(static_cast<quint32>(inOrder.size()),
                                              [&](quint32 record) { return labelOf(inOrder[record]); })) {
        records.push_back(inOrder[number]);
    }
}

QrvVpnDataPointer QrvVpnDataList::Groups::make(const Record &record) const {
    const QByteArrayView line = lines.at(record.line);
    const Fields fields = fieldsOf(line).value_or(Fields());
    auto data = std::make_shared<QrvVpnData>();
    data->ipAdressArray = UnicodeText::decoded(addressesOf(line)).split(u',');
    data->ipAdress = data->ipAdressArray.at(QRandomGenerator::global()->bounded(data->ipAdressArray.size()));
    if (data->ipAdress.isNull()) {
        data->ipAdress = QStringLiteral("");
    }
    data->cityCountry = UnicodeText::decoded(labelOf(record));
    data->codeName = UnicodeText::decoded(fields[2]) + QChar(u' ') + UnicodeText::decoded(fields[3]);
    data->countryCode = UnicodeText::decoded(fields[3]);
    data->user = user;
    data->pass = password;
    data->key = key;
    filter(*data);
    return data;
}

QrvVpnDataList::QrvVpnDataList(const ServerLines &lines, const QString &user, const QString &password,
                               const QString &key)
    : m_groups(std::make_shared<Groups>()) {
    m_groups->lines = lines;
    m_groups->user = user;
    m_groups->password = password;
    m_groups->key = key;
    m_groups->readLines();
}

qsizetype QrvVpnDataList::size() const {
    return m_groups ? static_cast<qsizetype>(m_groups->records.size()) : 0;
}

QrvVpnDataPointer QrvVpnDataList::at(qsizetype index) const {
    QrvVpnDataPointer &group = m_groups->made[index];
    if (!group) {
        group = m_groups->make(m_groups->records.at(static_cast<std::size_t>(index)));
    }
    return group;
}

QByteArrayView QrvVpnDataList::label(qsizetype index) const {
    return m_groups->labelOf(m_groups->records[static_cast<std::size_t>(index)]);
}

QByteArrayView QrvVpnDataList::countryCode(qsizetype index) const {
    return m_groups->fieldsAt(index)[3];
}

QString QrvVpnDataList::codeName(qsizetype index) const {
    const Fields fields = m_groups->fieldsAt(index);
    return UnicodeText::decoded(fields[2]) + QChar(u' ') + UnicodeText::decoded(fields[3]);
}

bool QrvVpnDataList::isUsable(qsizetype index) const {
    if (m_groups->discarded.isEmpty()) {
        return true;
    }
    QByteArrayView addresses =
        addressesOf(m_groups->lines.at(m_groups->records[static_cast<std::size_t>(index)].line));
    for (;;) {
        const qsizetype comma = addresses.indexOf(',');
        const QByteArrayView address = comma < 0 ? addresses : addresses.first(comma);
        if (!m_groups->discarded.contains(QByteArray::fromRawData(address.data(), address.size()))) {
            return true;
        }
        if (comma < 0) {
            return false;
        }
        addresses = addresses.sliced(comma + 1);
    }
}

void QrvVpnDataList::setDiscarded(const QSet<QString> &addresses) {
    if (!m_groups) {
        return;
    }
    m_groups->discarded.clear();
    for (const QString &address : addresses) {
        m_groups->discarded.insert(address.toUtf8());
    }
    for (const QrvVpnDataPointer &group : std::as_const(m_groups->made)) {
        m_groups->filter(*group);
    }
}

} // namespace quorvane
