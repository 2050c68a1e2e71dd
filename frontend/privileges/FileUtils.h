#pragma once

namespace quorvane {

/// Care for the program's own files.
class FileUtils {
public:
    /// Forces the preferences file to owner read and write. Where that fails the file is removed: better an
    /// empty one than one that others can read or that the program may not be able to rewrite. Any thread.
    static void checkUserDefaultsPremmision();
};

} // namespace quorvane
