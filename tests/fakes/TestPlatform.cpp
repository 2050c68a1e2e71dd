#include "TestPlatform.h"

#include "platform/PropertyList.h"

#include <QDir>

namespace quorvane::fakes {

namespace {

/// Puts a new fake in its place and keeps its own type in view.
template <typename Fake, typename Interface, typename... Arguments>
Fake *install(std::unique_ptr<Interface> &place, Arguments &&...arguments) {
    auto fake = std::make_unique<Fake>(std::forward<Arguments>(arguments)...);
    Fake *view = fake.get();
    place = std::move(fake);
    return view;
}

} // namespace

TestPlatform::TestPlatform(FakeReachability::Queues queues)
    : preferencesFake(install<MemoryPreferences>(real.preferences)),
      delayedCallsFake(install<ManualDelayedCalls>(real.delayedCalls)),
      logSinkFake(install<RecordingLogSink>(real.logSink)),
      scriptingFake(install<FakeScriptingService>(real.scripting)),
      authorizationFake(install<FakeAuthorizationService>(real.authorization)),
      keyStoreFake(install<MemoryKeyStore>(real.keyStore)),
      reachabilityFake(install<FakeReachability>(real.reachability, queues)),
      hardwareFake(install<FakeHardware>(real.hardware)),
      hotKeysFake(install<FakeHotKeyService>(real.hotKeys)),
      processesFake(install<FakeProcessTable>(real.processes)),
      trayHostsFake(install<FakeTrayHosts>(real.trayHosts)), urlsFake(install<FakeUrlLoader>(real.urls)),
      workspaceFake(install<RecordingWorkspace>(real.workspace)) {
    makeFolders();
    real.userDefaults = std::make_unique<quorvane::platform::UserDefaultsController>(*real.preferences);
    real.notifications = std::make_unique<quorvane::platform::NotificationCenter>();
    real.log = std::make_unique<quorvane::platform::SystemLog>(*real.logSink, *real.preferences);
    real.service = {QStringLiteral("api.quorvane.test"), QStringLiteral("www.quorvane.test"),
                    QStringLiteral("net.quorvane.test"), QString(), QStringList()};
    setInfo({{QStringLiteral("CFBundleVersion"), QStringLiteral("1.0.0")},
             {QStringLiteral("CFBundleIdentifier"), QStringLiteral("com.tallowind.Quorvane")}});
    quorvane::platform::Platform::setCurrent(&real);
}

TestPlatform::~TestPlatform() {
    quorvane::platform::Platform::setCurrent(nullptr);
}

void TestPlatform::makeFolders() {
    const QDir root(folder.path());
    const bool made = folder.isValid() && root.mkpath(QStringLiteral("home/Library/Preferences")) &&
                      root.mkpath(QStringLiteral("contents/bin")) &&
                      root.mkpath(QStringLiteral("contents/Resources")) && root.mkpath(QStringLiteral("tmp"));
    if (!made) {
        qFatal("the test platform's folders cannot be made");
    }
    real.account = {root.filePath(QStringLiteral("home")), QStringLiteral("Joe Tester"),
                    QStringLiteral("joe")};
    real.temporaryFolder = root.filePath(QStringLiteral("tmp"));
    preferencesFake->setFilePath(real.account.library() +
                                 QStringLiteral("/Preferences/com.tallowind.Quorvane.plist"));
}

QString TestPlatform::addResource(const QString &name, const QByteArray &bytes) const {
    QFile file(real.bundle->resourcesPath() + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("a resource of the test platform cannot be written");
    }
    return file.fileName();
}

void TestPlatform::setInfo(const QVariantMap &dictionary) {
    const QString contents = folder.filePath(QStringLiteral("contents"));
    if (!quorvane::platform::PropertyList::writeFile(contents + QStringLiteral("/Info.plist"), dictionary)) {
        qFatal("the test platform's information dictionary cannot be written");
    }
    real.bundle = std::make_unique<quorvane::platform::Bundle>(contents);
}

} // namespace quorvane::fakes
