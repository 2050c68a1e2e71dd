#pragma once

#include "FakeAuthorizationService.h"
#include "FakeHardware.h"
#include "FakeHotKeyService.h"
#include "FakeProcessTable.h"
#include "FakeReachability.h"
#include "FakeScriptingService.h"
#include "FakeTrayHosts.h"
#include "FakeUrlLoader.h"
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
/// Home, contents and temporary folders are private to it and go with it. The information dictionary
/// says version "1.0.0" and identifier "com.tallowind.Quorvane"; the user is "joe", "Joe Tester".
/// The hosts are api.quorvane.test, www.quorvane.test and net.quorvane.test.
class TestPlatform {
public:
    explicit TestPlatform(FakeReachability::Queues queues = FakeReachability::Queues::Threaded);
    ~TestPlatform();
    TestPlatform(const TestPlatform &) = delete;
    TestPlatform &operator=(const TestPlatform &) = delete;

    /// Writes a file into the contents folder's Resources; its full path.
    QString addResource(const QString &name, const QByteArray &bytes) const;
    /// Replaces the information dictionary and reads the contents folder again.
    void setInfo(const QVariantMap &dictionary);

    [[nodiscard]] QString home() const { return real.account.home; }

    [[nodiscard]] quorvane::platform::Platform &platform() { return real; }

    [[nodiscard]] MemoryPreferences &preferences() const { return *preferencesFake; }

    [[nodiscard]] ManualDelayedCalls &delayedCalls() const { return *delayedCallsFake; }

    [[nodiscard]] RecordingLogSink &logSink() const { return *logSinkFake; }

    [[nodiscard]] FakeScriptingService &scripting() const { return *scriptingFake; }

    [[nodiscard]] FakeAuthorizationService &authorization() const { return *authorizationFake; }

    [[nodiscard]] MemoryKeyStore &keyStore() const { return *keyStoreFake; }

    [[nodiscard]] FakeReachability &reachability() const { return *reachabilityFake; }

    [[nodiscard]] FakeHardware &hardware() const { return *hardwareFake; }

    [[nodiscard]] FakeHotKeyService &hotKeys() const { return *hotKeysFake; }

    [[nodiscard]] FakeProcessTable &processes() const { return *processesFake; }

    [[nodiscard]] FakeTrayHosts &trayHosts() const { return *trayHostsFake; }

    [[nodiscard]] FakeUrlLoader &urls() const { return *urlsFake; }

    [[nodiscard]] RecordingWorkspace &workspace() const { return *workspaceFake; }

private:
    void makeFolders();

    QTemporaryDir folder;
    quorvane::platform::Platform real;
    MemoryPreferences *preferencesFake;
    ManualDelayedCalls *delayedCallsFake;
    RecordingLogSink *logSinkFake;
    FakeScriptingService *scriptingFake;
    FakeAuthorizationService *authorizationFake;
    MemoryKeyStore *keyStoreFake;
    FakeReachability *reachabilityFake;
    FakeHardware *hardwareFake;
    FakeHotKeyService *hotKeysFake;
    FakeProcessTable *processesFake;
    FakeTrayHosts *trayHostsFake;
    FakeUrlLoader *urlsFake;
    RecordingWorkspace *workspaceFake;
};

} // namespace quorvane::fakes
