#pragma once

#include <QString>

namespace quorvane::platform {

/// The desktop around the program. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens the address in the user's browser. False when the request could not be made.
    virtual bool openUrl(const QString &url) = 0;
    /// The same for a page that is a file of the program.
    virtual bool openPage(const QString &path) = 0;
    /// Makes this process the only running copy of the program for this user. False when another copy is
    /// running. The state lasts until the process ends in any way.
    [[nodiscard]] virtual bool acquireSingleInstance(const QString &identifier) = 0;
    /// Writes the desktop's own autostart entry. The entry is never removed: one boolean in it switches it on
    /// and off. False when it could not be written.
    virtual bool setAutostart(const QString &program, bool enabled) = 0;
    /// Posts a desktop notification; without a notification service nothing happens.
    virtual void notify(const QString &title, const QString &text) = 0;
};

} // namespace quorvane::platform
