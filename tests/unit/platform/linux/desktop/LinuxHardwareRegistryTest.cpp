#include "platform/linux/desktop/LinuxHardwareRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class LinuxHardwareRegistryTest : public ::testing::Test {
protected:
    void entry(const QString &path, const QByteArray &text) const {
        const QString full = m_folder.filePath(path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(full).path()));
        QFile file(full);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }

    void device(const QString &name, int index, const QByteArray &address, int type = 1) const {
        entry(QStringLiteral("net/") + name + QStringLiteral("/ifindex"), QByteArray::number(index) + '\n');
        entry(QStringLiteral("net/") + name + QStringLiteral("/address"), address + '\n');
        entry(QStringLiteral("net/") + name + QStringLiteral("/type"), QByteArray::number(type) + '\n');
    }

    QTemporaryDir m_folder;
    platform::LinuxHardwareRegistry m_registry{m_folder.filePath(QStringLiteral("dmi")),
                                               m_folder.filePath(QStringLiteral("net"))};
};

TEST_F(LinuxHardwareRegistryTest, WithoutDevicesNothingIsFound) {
    EXPECT_FALSE(m_registry.platformSerialNumber());
    EXPECT_FALSE(m_registry.firstEthernetAddress());
}

TEST_F(LinuxHardwareRegistryTest, ProductSerialThenBoardSerial) {
    entry(QStringLiteral("dmi/board_serial"), "BOARD 7\n");
    EXPECT_EQ(m_registry.platformSerialNumber(), QStringLiteral("BOARD 7"));
    entry(QStringLiteral("dmi/product_serial"), "  \n");
    EXPECT_EQ(m_registry.platformSerialNumber(), QStringLiteral("BOARD 7"));
    entry(QStringLiteral("dmi/product_serial"), " C02 X \n");
    EXPECT_EQ(m_registry.platformSerialNumber(), QStringLiteral("C02 X")) << "read again each time";
}

TEST_F(LinuxHardwareRegistryTest, EthernetOfTheLowestIndex) {
    device(QStringLiteral("lo"), 1, "00:00:00:00:00:00", 772);
    device(QStringLiteral("eth1"), 4, "02:00:00:00:00:04");
    device(QStringLiteral("wlan0"), 12, "02:00:00:00:00:12");
    device(QStringLiteral("eth0"), 3, "62:27:8e:2c:81:6c");
    EXPECT_EQ(m_registry.firstEthernetAddress(), QByteArray::fromHex("62278e2c816c"));
}

TEST_F(LinuxHardwareRegistryTest, OnlyNetworkCardsCount) {
    device(QStringLiteral("ifb0"), 2, "02:00:00:00:00:02");
    device(QStringLiteral("tap0"), 3, "02:00:00:00:00:03");
    entry(QStringLiteral("net/tap0/tun_flags"), "0x1002\n");
    device(QStringLiteral("br0"), 4, "02:00:00:00:00:04");
    entry(QStringLiteral("net/br0/bridge/stp_state"), "0\n");
    device(QStringLiteral("tun0"), 5, "", 65534);
    device(QStringLiteral("zero"), 6, "00:00:00:00:00:00");
    device(QStringLiteral("long"), 7, "02:00:00:00:00:00:00:00");
    EXPECT_FALSE(m_registry.firstEthernetAddress());
    device(QStringLiteral("eth0"), 8, "02:00:00:00:00:08");
    EXPECT_EQ(m_registry.firstEthernetAddress(), QByteArray::fromHex("020000000008"));
}

} // namespace

} // namespace quorvane::platform
