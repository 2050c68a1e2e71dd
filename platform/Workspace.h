#pragma once

#include <QString>

namespace quorvane::platform {

/// The desktop around the program. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the address in the user's browser. False when that could not be asked for.
    virtual bool openUrl(const QString &url) = 0;
    /// Becomes the one running copy of this program for this user. False when another copy is.
    /// Held until the process ends, however it ends.
    [[nodiscard]] virtual bool acquireSingleInstance(const QString &identifier) = 0;
    /// Keeps the desktop's own autostart entry in step: the entry is written and stays, switched by one
    /// boolean. False when it could not be written.
    virtual bool setAutostart(const QString &program, bool enabled) = 0;
    /// Posts a desktop notification; without a notification service nothing happens.
    virtual void notify(const QString &title, const QString &text) = 0;
};

} // namespace quorvane::platform
