#include "platform/linux/process/SecretMemory.h"

#include <QFile>
#include <QString>
#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define UNDER_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define UNDER_SANITIZER
#endif
#endif

namespace quorvane::platform {

namespace {

/// The kernel's flags of the pages that begin at the address; empty without such pages.
QByteArrayList flagsOfPages(const void *address) {
    QFile maps(QStringLiteral("/proc/self/smaps"));
    if (!maps.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray begin = QByteArray::number(reinterpret_cast<quintptr>(address), 16) + '-';
    bool found = false;
    const QByteArrayList lines = maps.readAll().split('\n');
    for (const QByteArray &line : lines) {
        found = found || line.startsWith(begin);
        if (found && line.startsWith("VmFlags:")) {
            return line.simplified().split(' ');
        }
    }
    return {};
}

TEST(SecretMemoryTest, ContainsTheTextAndALineFeed) {
    const SecretMemory secret(QStringView(u"Zq7 \u00e9\u20ac"));
    EXPECT_EQ(secret.line(), QByteArray("Zq7 \xc3\xa9\xe2\x82\xac\n"));
    EXPECT_EQ(SecretMemory(QStringView()).line(), QByteArray("\n"));
}

TEST(SecretMemoryTest, PagesAreLeftOutOfDumpsSwapAndChildren) {
    const SecretMemory secret(QStringView(u"secret"));
    const QByteArrayList flags = flagsOfPages(secret.line().constData());
    EXPECT_TRUE(flags.contains("dd")) << "not in a core dump";
    EXPECT_TRUE(flags.contains("dc")) << "not in a child";
    // The sanitizers replace mlock() by a function that does nothing.
#ifndef UNDER_SANITIZER
    EXPECT_TRUE(flags.contains("lo")) << "not in swap";
#endif
}

TEST(SecretMemoryTest, LongTextsFit) {
    const QString text(100000, QChar(0x20ac));
    EXPECT_EQ(SecretMemory(text).line(), text.toUtf8() + '\n');
}

TEST(SecretMemoryTest, PagesAreGoneAtTheEnd) {
    const void *address = nullptr;
    {
        const SecretMemory secret(QStringView(u"secret"));
        address = secret.line().constData();
        ASSERT_FALSE(flagsOfPages(address).isEmpty());
    }
    EXPECT_FALSE(flagsOfPages(address).contains("dc"));
}

} // namespace

} // namespace quorvane::platform
