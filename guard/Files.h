#pragma once

#include "common/FileDescriptor.h"
#include "common/Result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace quorvane::guard {

/// A plain file that was opened.
struct OpenedFile {
    FileDescriptor descriptor;
    uid_t owner = 0;
};

/// Opens a plain file that has this one name only. Does not follow a link as the last part of the path and
/// does not open devices or pipes. `flags` are the access flags of open().
Result<OpenedFile> openPlainFile(const std::string &path, int flags);

/// All bytes of a file. Fails when it has more than `maximumSize` bytes or cannot be read.
Result<std::string> readAll(const FileDescriptor &file, std::size_t maximumSize);

/// Writes all bytes. False when that fails; see errno.
[[nodiscard]] bool writeAll(const FileDescriptor &file, std::string_view bytes);

/// Makes a file in memory with these bytes: only this process and its children can read it, no process can
/// change it, and it is not written to a disk. `name` is for error texts and debuggers.
Result<FileDescriptor> sealedCopy(const std::string &name, std::string_view bytes);

/// Opens the log once more, with a lock for readers on the whole of it. While it is open, the application can
/// see that OpenVPN runs, also where other users' processes are hidden from it. Nothing is open if that
/// fails.
[[nodiscard]] FileDescriptor lockedLog(const FileDescriptor &log);

/// The path under which this process, and a child that inherits the descriptor, can open it again.
[[nodiscard]] std::string pathOf(const FileDescriptor &descriptor);

} // namespace quorvane::guard
