#pragma once

#include <QString>

namespace platform {

/// Sets room on the disk aside for a file that is there already, so that another program can append that many
/// bytes whatever fills the disk meanwhile. The file's size and contents stay. Any thread.
/// 0, also where the file system cannot set anything aside, or an errno value when there is no room.
[[nodiscard]] int reserveRoom(const QString &path, qint64 bytes);

/// Whether a new file of that many bytes could be made in the folder now. Leaves nothing behind. Any thread.
/// 0, also where the file system cannot tell, or an errno value.
[[nodiscard]] int hasRoom(const QString &folder, qint64 bytes);

} // namespace platform
