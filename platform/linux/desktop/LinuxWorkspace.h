#pragma once

#include "common/FileDescriptor.h"
#include "platform/Workspace.h"

#include <QByteArray>
#include <map>

namespace platform {

using quorvane::FileDescriptor;

/// Where the desktop keeps a user's files.
struct WorkspaceFolders {
    /// Private to the user and gone with the session; may be empty.
    QString runtime;
    /// Usually ~/.config.
    QString configuration;
    /// Usually ~/.cache.
    QString cache;

    /// From the XDG variables, else below the home folder.
    [[nodiscard]] static WorkspaceFolders ofUser(const QString &home);
};

/// The freedesktop desktop.
class LinuxWorkspace final : public Workspace {
public:
    explicit LinuxWorkspace(const WorkspaceFolders &userFolders);

    /// Web addresses only.
    bool openUrl(const QString &url) override;
    /// Locks a file that the kernel unlocks with the process. True also where no lock file can be made:
    /// a program that cannot tell is not kept from starting.
    [[nodiscard]] bool acquireSingleInstance(const QString &identifier) override;
    bool setAutostart(const QString &program, bool enabled) override;
    void notify(const QString &title, const QString &text) override;

private:
    const WorkspaceFolders folders;
    std::map<QString, FileDescriptor> instances;
};

} // namespace platform
