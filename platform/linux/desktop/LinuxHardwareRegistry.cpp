#include "LinuxHardwareRegistry.h"

#include <QDir>
#include <QFile>

namespace quorvane::platform {

namespace {

constexpr int ethernetType = 1;
constexpr qsizetype addressSize = 6;
constexpr qint64 maximumEntrySize = 4096;

QByteArray entry(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(maximumEntrySize).trimmed() : QByteArray();
}

/// A device of the Ethernet type that is not a network card.
bool isVirtual(const QDir &device) {
    return device.dirName().startsWith(QStringLiteral("ifb")) || device.exists(QStringLiteral("tun_flags")) ||
           device.exists(QStringLiteral("bridge")) || device.exists(QStringLiteral("bonding"));
}

/// The six bytes of a usable Ethernet device; empty for others.
QByteArray ethernetAddress(const QDir &device) {
    if (entry(device.filePath(QStringLiteral("type"))).toInt() != ethernetType || isVirtual(device)) {
        return {};
    }
    const QByteArray text = entry(device.filePath(QStringLiteral("address")));
    const QByteArray bytes = QByteArray::fromHex(text);
    const bool isAddress = text == bytes.toHex(':') && bytes.size() == addressSize;
    return isAddress && bytes.count('\0') != addressSize ? bytes : QByteArray();
}

} // namespace

LinuxHardwareRegistry::LinuxHardwareRegistry(const QString &firmwareFolder, const QString &networkFolder)
    : m_firmware(firmwareFolder), m_network(networkFolder) {}

std::optional<QString> LinuxHardwareRegistry::platformSerialNumber() const {
    for (const QString &name : {QStringLiteral("/product_serial"), QStringLiteral("/board_serial")}) {
        const QByteArray serial = entry(m_firmware + name);
        if (!serial.isEmpty()) {
            return QString::fromUtf8(serial);
        }
    }
    return std::nullopt;
}

std::optional<QByteArray> LinuxHardwareRegistry::firstEthernetAddress() const {
    std::optional<QByteArray> first;
    int firstIndex = 0;
    const QStringList names = QDir(m_network).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const QDir device(m_network + QLatin1Char('/') + name);
        const int index = entry(device.filePath(QStringLiteral("ifindex"))).toInt();
        const QByteArray address = ethernetAddress(device);
        if (address.isEmpty() || index <= 0 || (first && index > firstIndex)) {
            continue;
        }
        first = address;
        firstIndex = index;
    }
    return first;
}

} // namespace quorvane::platform
