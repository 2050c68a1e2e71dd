#include "platform/Bundle.h"
#include "fakes/TestPlatform.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

using platform::Bundle;

TEST(BundleTest, ReadsTheInformationDictionary) {
    fakes::TestPlatform test;
    test.setInfo({{QStringLiteral("CFBundleVersion"), QStringLiteral("2.5")},
                  {QStringLiteral("CFBundleIdentifier"), QStringLiteral("com.example")},
                  {QStringLiteral("Number"), 1}});
    const Bundle &bundle = *test.platform().bundle;
    EXPECT_EQ(bundle.version(), QStringLiteral("2.5"));
    EXPECT_EQ(bundle.identifier(), QStringLiteral("com.example"));
    EXPECT_TRUE(bundle.info(QStringLiteral("Missing")).isNull());
    EXPECT_TRUE(bundle.info(QStringLiteral("Number")).isNull()) << "not a text";
}

TEST(BundleTest, FindsResources) {
    const fakes::TestPlatform test;
    const Bundle &bundle = *quorvane::platform::Platform::current().bundle;
    const QString script = test.addResource(QStringLiteral("tool.sh"), "x");
    const QString bare = test.addResource(QStringLiteral("bare"), "x");
    EXPECT_EQ(bundle.pathForResource(QStringLiteral("tool"), QStringLiteral("sh")), script);
    EXPECT_EQ(bundle.pathForResource(QStringLiteral("bare"), QString()), bare);
    EXPECT_TRUE(bundle.pathForResource(QStringLiteral("bare"), QStringLiteral("sh")).isNull());
    EXPECT_TRUE(bundle.pathForResource(QString(), QString()).isNull());
    EXPECT_EQ(bundle.resourcesPath(), bundle.contentsPath() + QStringLiteral("/Resources"));
}

TEST(BundleTest, WithoutADictionaryTheVersionIsEmpty) {
    const QTemporaryDir folder;
    const Bundle bundle(folder.path());
    EXPECT_FALSE(bundle.version().isNull());
    EXPECT_TRUE(bundle.version().isEmpty());
    EXPECT_TRUE(bundle.identifier().isNull());
}

TEST(BundleTest, OfExecutableIsTwoComponentsUp) {
    const QString self = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    EXPECT_EQ(Bundle::ofExecutable().contentsPath(), QFileInfo(QFileInfo(self).path()).path());
}

} // namespace

} // namespace quorvane::platform
