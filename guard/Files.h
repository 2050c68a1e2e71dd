#pragma once

#include "common/FileDescriptor.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace quorvane::guard {

/// A file that was found to be what it should be, or why not.
struct OpenedFile {
    FileDescriptor descriptor; ///< not open when there is a reason
    uid_t owner = 0;
    std::string reason;
};

/// Opens a plain file that has this one name only, without following a link in the last place and without
/// waking a device. `flags` are open()'s access flags.
OpenedFile openPlainFile(const std::string &path, int flags);

/// All of a file's bytes; false when they are more than `most` or cannot be read.
bool readAll(const FileDescriptor &file, std::size_t most, std::string &bytes);

/// Bytes in memory that only the process and its children can read and nobody can change; nothing of them
/// reaches a disk. Not open when the system refuses.
FileDescriptor sealedCopy(const char *name, std::string_view bytes);

/// The path under which this process, and a child that inherits the descriptor, can open it again.
std::string pathOf(const FileDescriptor &descriptor);

} // namespace quorvane::guard
