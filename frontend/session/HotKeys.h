#pragma once

#include "HotKeyTable.h"
#include "frontend/support/Preferences.h"
#include "platform/HotKeyService.h"

#include <array>
#include <functional>
#include <optional>
#include <vector>

namespace quorvane {

/// The five actions' global hot keys: registers the stored choices with the desktop and reports presses. Main
/// thread.
///
/// A registration lives until the program ends or "None" is registered for its action. Registering another
/// combination for an action leaves the previous one registered, and both act.
class HotKeys {
public:
    enum class Action : quint32 { HideIp = 1, ChangeIp, StopHidingIp, DiscardIp, BringUpWindow };

    /// In the order of registration.
    static constexpr std::array actions = {Action::HideIp, Action::ChangeIp, Action::StopHidingIp,
                                           Action::DiscardIp, Action::BringUpWindow};

    /// Why an action's last registration does not act.
    struct Problem {
        enum class Kind { None, TakenElsewhere, HeldByAction, UnknownKey, Declined };
        Kind kind = Kind::None;
        /// For HeldByAction: the action for which the combination is still registered.
        Action holder = Action::HideIp;

        bool operator==(const Problem &) const = default;
    };

    using PressHandler = std::function<void(quint32 id)>;
    using ChangeHandler = std::function<void()>;

    HotKeys();
    ~HotKeys();
    HotKeys(const HotKeys &) = delete;
    HotKeys &operator=(const HotKeys &) = delete;

    /// The preference that stores the action's tag.
    [[nodiscard]] static Preference preference(Action action);
    [[nodiscard]] static platform::HotKeyIdentifier identifier(Action action);
    /// The tag stored for the action.
    [[nodiscard]] static qint32 storedTag(Action action);
    /// Whether the desktop has a service for global hot keys.
    [[nodiscard]] static bool isAvailable();

    /// Calls `pressed` for every press of a hot key of this process, and `changed` when the desktop withdraws
    /// a registration or begins to offer hot keys; then the stored tags are registered. Once, before the
    /// first registration.
    void install(PressHandler pressed, ChangeHandler changed);
    /// Sets the description of the action that the desktop shows to the user. Call it before the action's hot
    /// keys are registered.
    static void describe(Action action, const QString &text);
    /// Registers the five stored tags, in the order of the actions.
    void registerStored();
    /// Tag -1 unregisters htkEvent with the desktop, without clearing it. Any other tag with a combination is
    /// registered; htkEvent changes only if the desktop accepts.
    void registerHotKey(qint32 tag, platform::HotKeyIdentifier htkID, platform::HotKeyReference &htkEvent);

    [[nodiscard]] Problem problem(Action action) const { return m_problems[indexOf(action)]; }

    /// The action's current registration; it may be none or one that was unregistered.
    [[nodiscard]] platform::HotKeyReference reference(Action action) const {
        return m_references[indexOf(action)];
    }

private:
    struct Held {
        HotKeyTable::Combination combination;
        platform::HotKeyReference reference;
        quint32 id;
    };

    static constexpr std::size_t indexOf(Action action) { return static_cast<std::size_t>(action) - 1; }

    [[nodiscard]] static bool isAction(quint32 id);
    [[nodiscard]] Problem problemAfter(platform::HotKeyError error,
                                       const HotKeyTable::Combination &combination, quint32 id) const;
    void setProblem(quint32 id, const Problem &problem);
    void forget(platform::HotKeyReference reference);
    void registrationWithdrawn(platform::HotKeyReference reference, platform::HotKeyError error);

    std::array<platform::HotKeyReference, actions.size()> m_references{};
    std::array<Problem, actions.size()> m_problems{};
    std::vector<Held> m_heldKeys;
    ChangeHandler m_changed;
};

} // namespace quorvane
