#pragma once

#include "HotKeyRegistry.h"

#include <QByteArray>

#include <memory>

namespace quorvane::platform {

class X11KeyGrabs;

/// Global hot keys of an X11 desktop. The connection is opened when it is first needed; after it is lost it
/// is not opened again.
class X11HotKeyService final : public HotKeyService {
public:
    /// An empty name means the display of the environment.
    explicit X11HotKeyService(const QByteArray &display = {});
    ~X11HotKeyService() override;
    X11HotKeyService(const X11HotKeyService &) = delete;
    X11HotKeyService &operator=(const X11HotKeyService &) = delete;

    [[nodiscard]] bool isAvailable() const override;
    [[nodiscard]] HotKeyRegistration registerHotKey(quint32 keyCode, quint32 modifiers,
                                                    HotKeyIdentifier identifier) override;
    HotKeyError unregisterHotKey(HotKeyReference reference) override;
    void installEventHandler(EventHandler handler) override;
    void installRefusalHandler(RefusalHandler handler) override;

private:
    struct State;

    [[nodiscard]] X11KeyGrabs &grabs() const;

    const QByteArray m_display;
    /// Separate from the service, because its first use may be a const function.
    const std::unique_ptr<State> m_state;
};

} // namespace quorvane::platform
