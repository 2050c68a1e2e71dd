#pragma once

#include <QString>
#include <functional>

namespace quorvane {

/// What the session needs of the windows. Main thread. Tests use a recording fake.
class SessionWindow {
public:
    virtual ~SessionWindow() = default;

    /// Opens the dialog for the administrator's pair and returns; `closed` is called when it was closed.
    virtual void openAdministratorDialog(const std::function<void()> &closed) = 0;
    /// Brings the main window forward.
    virtual void showWindow() = 0;
    /// Whether the program was started to stay in the background.
    [[nodiscard]] virtual bool startedHidden() const = 0;
    /// Whether there is an image of this name.
    [[nodiscard]] virtual bool hasImage(const QString &name) const = 0;
    virtual void terminateApplication() = 0;
};

/// The tray icon's animation while an attempt runs. Main thread.
class AttemptAnimation {
public:
    virtual ~AttemptAnimation() = default;
    /// Starts from the first frame; does nothing while the animation is running.
    virtual void start() = 0;
    virtual void stop() = 0;
    virtual void resetFrames() = 0;
};

} // namespace quorvane
