#pragma once

namespace quorvane {

/// Permissions of the program's own files.
class FileUtils {
public:
    /// Sets the preferences file's mode to read and write for its owner only. If that fails, the file is
    /// removed: losing the preferences is better than a file that others can read or that the program cannot
    /// rewrite. Acts on a regular file only, never through a symbolic link. Any thread.
    static void checkUserDefaultsPremmision();
};

} // namespace quorvane
