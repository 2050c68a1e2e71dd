#include "PortalHotKeyService.h"

#include "VirtualKeys.h"

#include <QCoreApplication>

#include <algorithm>

namespace quorvane::platform {

namespace {

QString idOf(const HotKeyRegistry::Entry &entry) {
    return QStringLiteral("hotkey-%1-%2-%3").arg(entry.identifier.id).arg(entry.modifiers).arg(entry.keyCode);
}

QString triggerOf(const HotKeyRegistry::Entry &entry) {
    QString trigger;
    if ((entry.modifiers & HotKeyService::control) != 0) {
        trigger += QLatin1String("CTRL+");
    }
    if ((entry.modifiers & HotKeyService::shift) != 0) {
        trigger += QLatin1String("SHIFT+");
    }
    if ((entry.modifiers & HotKeyService::command) != 0) {
        trigger += QLatin1String("LOGO+");
    }
    return trigger + QLatin1String(findVirtualKey(entry.keyCode)->symbol);
}

} // namespace

PortalHotKeyService::PortalHotKeyService(const PortalShortcuts::Settings &settings)
    : m_shortcuts(settings, {[this](const QString &id) { reportPressed(id); },
                             [this](const QStringList &ids, HotKeyError error) { withdraw(ids, error); },
                             [this] {
                                 reportAppearance();
                             }}) {
    m_changed.setSingleShot(true);
    QObject::connect(&m_changed, &QTimer::timeout, &m_changed, [this] { sendWanted(); });
}

bool PortalHotKeyService::isAvailable() const {
    return m_shortcuts.isAvailable();
}

HotKeyRegistration PortalHotKeyService::registerHotKey(quint32 keyCode, quint32 modifiers,
                                                       HotKeyIdentifier identifier) {
    const HotKeyError error =
        isAvailable() ? m_registry.check(keyCode, modifiers) : HotKeyError::NotAvailable;
    if (error != HotKeyError::None) {
        return {error, 0};
    }
    m_changed.start(0);
    return {HotKeyError::None, m_registry.add(keyCode, modifiers, identifier)};
}

HotKeyError PortalHotKeyService::unregisterHotKey(HotKeyReference reference) {
    if (!m_registry.remove(reference)) {
        return HotKeyError::UnknownReference;
    }
    m_changed.start(0);
    return HotKeyError::None;
}

void PortalHotKeyService::installEventHandler(EventHandler pressed) {
    m_pressed = std::move(pressed);
}

void PortalHotKeyService::installRefusalHandler(RefusalHandler refused) {
    m_refused = std::move(refused);
}

void PortalHotKeyService::installAppearanceHandler(AppearanceHandler appeared) {
    m_appeared = std::move(appeared);
}

void PortalHotKeyService::reportAppearance() const {
    // A copy: the handler may install another.
    const AppearanceHandler handler = m_appeared;
    if (handler) {
        handler();
    }
}

void PortalHotKeyService::setDescription(quint32 id, const QString &text) {
    m_descriptions.insert(id, text);
}

PortalShortcuts::Shortcut PortalHotKeyService::shortcutOf(const HotKeyRegistry::Entry &entry) const {
    const QString text = m_descriptions.value(
        entry.identifier.id,
        QCoreApplication::translate("PortalHotKeyService", "Hot key %1").arg(entry.identifier.id));
    return {idOf(entry), text, triggerOf(entry)};
}

/// In the order of the ids, so that a hot key that was removed and registered again is no change.
void PortalHotKeyService::sendWanted() {
    QList<PortalShortcuts::Shortcut> wanted;
    for (const HotKeyRegistry::Entry &entry : m_registry.entries()) {
        wanted.append(shortcutOf(entry));
    }
    std::sort(
        wanted.begin(), wanted.end(),
        [](const PortalShortcuts::Shortcut &a, const PortalShortcuts::Shortcut &b) { return a.id < b.id; });
    m_shortcuts.setWanted(wanted);
}

void PortalHotKeyService::reportPressed(const QString &id) const {
    const auto &entries = m_registry.entries();
    const auto found = std::find_if(entries.cbegin(), entries.cend(),
                                    [&id](const HotKeyRegistry::Entry &entry) { return idOf(entry) == id; });
    if (found == entries.cend()) {
        return;
    }
    const HotKeyIdentifier identifier = found->identifier;
    // A copy: the handler may install another.
    const EventHandler handler = m_pressed;
    if (handler) {
        handler(identifier);
    }
}

void PortalHotKeyService::withdraw(const QStringList &ids, HotKeyError error) {
    QList<HotKeyReference> lost;
    for (const HotKeyRegistry::Entry &entry : m_registry.entries()) {
        if (ids.contains(idOf(entry))) {
            lost.append(entry.reference);
        }
    }
    for (const HotKeyReference reference : std::as_const(lost)) {
        m_registry.remove(reference);
    }
    const RefusalHandler handler = m_refused;
    if (!handler) {
        return;
    }
    for (const HotKeyReference reference : std::as_const(lost)) {
        handler(reference, error);
    }
}

} // namespace quorvane::platform
