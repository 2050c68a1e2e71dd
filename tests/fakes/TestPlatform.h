#pragma once

#include "FakeAppearance.h"
#include "FakeAuthorizationService.h"
#include "FakeControlService.h"
#include "FakeHardware.h"
#include "FakeHotKeyService.h"
#include "FakeNetworkLock.h"
#include "FakeProcessTable.h"
#include "FakeReachability.h"
#include "FakeScriptingService.h"
#include "FakeTrayHosts.h"
#include "FakeTunnelWatch.h"
#include "FakeUrlLoader.h"
#include "ManualBackgroundWork.h"
#include "ManualDelayedCalls.h"
#include "MemoryKeyStore.h"
#include "MemoryPreferences.h"
#include "RecordingLogSink.h"
#include "RecordingWorkspace.h"

#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UserDefaultsController.h"

#include <QTemporaryDir>

namespace quorvane::fakes {

/// A platform made of fakes, current for its lifetime.
///
/// Home, contents and temporary folders are private to it and removed with it. The information dictionary
/// contains version "1.0.0" and identifier "com.tallowind.Quorvane"; the user is "joe", "Joe Tester". The
/// hosts are api.quorvane.test, www.quorvane.test and net.quorvane.test.
class TestPlatform {
public:
    explicit TestPlatform(FakeReachability::Queues queues = FakeReachability::Queues::Threaded);
    ~TestPlatform();
    TestPlatform(const TestPlatform &) = delete;
    TestPlatform &operator=(const TestPlatform &) = delete;

    /// Writes a file into the contents folder's Resources; returns its full path.
    QString addResource(const QString &name, const QByteArray &bytes) const;
    /// Replaces the information dictionary and reads the contents folder again.
    void setInfo(const QVariantMap &dictionary);

    [[nodiscard]] QString home() const { return m_real.account.home; }

    [[nodiscard]] quorvane::platform::Platform &platform() { return m_real; }

    [[nodiscard]] MemoryPreferences &preferences() const { return *m_preferencesFake; }

    [[nodiscard]] ManualDelayedCalls &delayedCalls() const { return *m_delayedCallsFake; }

    [[nodiscard]] RecordingLogSink &logSink() const { return *m_logSinkFake; }

    [[nodiscard]] FakeScriptingService &scripting() const { return *m_scriptingFake; }

    [[nodiscard]] FakeAuthorizationService &authorization() const { return *m_authorizationFake; }

    [[nodiscard]] MemoryKeyStore &keyStore() const { return *m_keyStoreFake; }

    [[nodiscard]] FakeReachability &reachability() const { return *m_reachabilityFake; }

    [[nodiscard]] FakeNetworkLock &networkLock() const { return *m_networkLockFake; }

    [[nodiscard]] FakeHardware &hardware() const { return *m_hardwareFake; }

    [[nodiscard]] FakeHotKeyService &hotKeys() const { return *m_hotKeysFake; }

    [[nodiscard]] FakeProcessTable &processes() const { return *m_processesFake; }

    [[nodiscard]] FakeTrayHosts &trayHosts() const { return *m_trayHostsFake; }

    [[nodiscard]] FakeTunnelWatch &tunnelWatch() const { return *m_tunnelWatchFake; }

    [[nodiscard]] FakeUrlLoader &urls() const { return *m_urlsFake; }

    [[nodiscard]] ManualBackgroundWork &background() const { return *m_backgroundFake; }

    [[nodiscard]] RecordingWorkspace &workspace() const { return *m_workspaceFake; }

    [[nodiscard]] FakeAppearance &appearance() const { return *m_appearanceFake; }

    [[nodiscard]] FakeControlService &control() const { return *m_controlFake; }

private:
    void makeFolders();

    QTemporaryDir m_folder;
    quorvane::platform::Platform m_real;
    MemoryPreferences *m_preferencesFake;
    ManualDelayedCalls *m_delayedCallsFake;
    RecordingLogSink *m_logSinkFake;
    FakeScriptingService *m_scriptingFake;
    FakeAuthorizationService *m_authorizationFake;
    MemoryKeyStore *m_keyStoreFake;
    FakeReachability *m_reachabilityFake;
    FakeNetworkLock *m_networkLockFake;
    FakeHardware *m_hardwareFake;
    FakeHotKeyService *m_hotKeysFake;
    FakeProcessTable *m_processesFake;
    FakeTrayHosts *m_trayHostsFake;
    FakeTunnelWatch *m_tunnelWatchFake;
    FakeUrlLoader *m_urlsFake;
    RecordingWorkspace *m_workspaceFake;
    FakeAppearance *m_appearanceFake;
    FakeControlService *m_controlFake;
    ManualBackgroundWork *m_backgroundFake;
};

} // namespace quorvane::fakes
