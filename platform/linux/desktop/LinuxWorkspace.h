#pragma once

#include "common/FileDescriptor.h"
#include "platform/Workspace.h"

#include <QByteArray>
#include <map>

namespace quorvane::platform {

/// The folders of the user's files on this desktop.
struct WorkspaceFolders {
    /// Private to the user and removed at the end of the session; may be empty.
    QString runtime;
    /// Usually ~/.config.
    QString configuration;
    /// Usually ~/.cache.
    QString cache;

    /// From the XDG variables, else below the home folder.
    [[nodiscard]] static WorkspaceFolders ofUser(const QString &home);
};

/// A desktop that follows the freedesktop standards.
class LinuxWorkspace final : public Workspace {
public:
    explicit LinuxWorkspace(const WorkspaceFolders &folders);

    /// Opens http and https addresses only.
    bool openUrl(const QString &url) override;
    bool openPage(const QString &path) override;
    /// Locks a file that the kernel unlocks when the process ends. True also where no lock file can be
    /// created: the program must still start when it cannot find out.
    [[nodiscard]] bool acquireSingleInstance(const QString &identifier) override;
    bool setAutostart(const QString &program, bool enabled) override;
    void notify(const QString &title, const QString &text) override;

private:
    const WorkspaceFolders m_folders;
    std::map<QString, FileDescriptor> m_instances;
};

} // namespace quorvane::platform
