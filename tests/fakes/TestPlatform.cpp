#include "TestPlatform.h"

#include "platform/PropertyList.h"

#include <QDir>

namespace quorvane::fakes {

namespace {

/// Installs a new fake and returns it with its own type.
template <typename Fake, typename Interface, typename... Arguments>
Fake *install(std::unique_ptr<Interface> &place, Arguments &&...arguments) {
    auto fake = std::make_unique<Fake>(std::forward<Arguments>(arguments)...);
    Fake *view = fake.get();
    place = std::move(fake);
    return view;
}

} // namespace

TestPlatform::TestPlatform(FakeReachability::Queues queues)
    : m_preferencesFake(install<MemoryPreferences>(m_real.preferences)),
      m_delayedCallsFake(install<ManualDelayedCalls>(m_real.delayedCalls)),
      m_logSinkFake(install<RecordingLogSink>(m_real.logSink)),
      m_scriptingFake(install<FakeScriptingService>(m_real.scripting)),
      m_authorizationFake(install<FakeAuthorizationService>(m_real.authorization)),
      m_keyStoreFake(install<MemoryKeyStore>(m_real.keyStore)),
      m_reachabilityFake(install<FakeReachability>(m_real.reachability, queues)),
      m_networkLockFake(install<FakeNetworkLock>(m_real.networkLock)),
      m_hardwareFake(install<FakeHardware>(m_real.hardware)),
      m_hotKeysFake(install<FakeHotKeyService>(m_real.hotKeys)),
      m_processesFake(install<FakeProcessTable>(m_real.processes)),
      m_trayHostsFake(install<FakeTrayHosts>(m_real.trayHosts)),
      m_tunnelWatchFake(install<FakeTunnelWatch>(m_real.tunnelWatch)),
      m_urlsFake(install<FakeUrlLoader>(m_real.urls)),
      m_workspaceFake(install<RecordingWorkspace>(m_real.workspace)),
      m_appearanceFake(install<FakeAppearance>(m_real.appearance)),
      m_controlFake(install<FakeControlService>(m_real.control)),
      m_backgroundFake(install<ManualBackgroundWork>(m_real.background)) {
    makeFolders();
    m_real.userDefaults = std::make_unique<quorvane::platform::UserDefaultsController>(*m_real.preferences);
    m_real.notifications = std::make_unique<quorvane::platform::NotificationCenter>();
    m_real.log = std::make_unique<quorvane::platform::SystemLog>(*m_real.logSink, *m_real.preferences);
    m_real.service = {QStringLiteral("api.quorvane.test"), QStringLiteral("www.quorvane.test"),
                      QStringLiteral("net.quorvane.test"), QString(), QStringList()};
    setInfo({{QStringLiteral("CFBundleVersion"), QStringLiteral("1.0.0")},
             {QStringLiteral("CFBundleIdentifier"), QStringLiteral("com.tallowind.Quorvane")}});
    quorvane::platform::Platform::setCurrent(&m_real);
}

TestPlatform::~TestPlatform() {
    quorvane::platform::Platform::setCurrent(nullptr);
}

void TestPlatform::makeFolders() {
    const QDir root(m_folder.path());
    const bool made = m_folder.isValid() && root.mkpath(QStringLiteral("home/Library/Preferences")) &&
                      root.mkpath(QStringLiteral("contents/bin")) &&
                      root.mkpath(QStringLiteral("contents/Resources")) && root.mkpath(QStringLiteral("tmp"));
    if (!made) {
        qFatal("the test platform's folders cannot be created");
    }
    m_real.account = {root.filePath(QStringLiteral("home")), QStringLiteral("Joe Tester"),
                      QStringLiteral("joe")};
    m_real.temporaryFolder = root.filePath(QStringLiteral("tmp"));
    m_preferencesFake->setFilePath(m_real.account.library() +
                                   QStringLiteral("/Preferences/com.tallowind.Quorvane.plist"));
}

QString TestPlatform::addResource(const QString &name, const QByteArray &bytes) const {
    QFile file(m_real.bundle->resourcesPath() + QLatin1Char('/') + name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("a resource of the test platform cannot be written");
    }
    return file.fileName();
}

void TestPlatform::setInfo(const QVariantMap &dictionary) {
    const QString contents = m_folder.filePath(QStringLiteral("contents"));
    if (!quorvane::platform::PropertyList::writeFile(contents + QStringLiteral("/Info.plist"), dictionary)) {
        qFatal("the test platform's information dictionary cannot be written");
    }
    m_real.bundle = std::make_unique<quorvane::platform::Bundle>(contents);
}

} // namespace quorvane::fakes
