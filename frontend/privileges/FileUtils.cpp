#include "FileUtils.h"

#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"

#include <filesystem>

namespace quorvane {

namespace fs = std::filesystem;

void FileUtils::checkUserDefaultsPremmision() {
    const fs::path path = platform::Platform::current().account.preferencesFile().toStdString();
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (status.type() == fs::file_type::not_found) {
        return;
    }
    if (error) {
        Diagnostics::logAlways(QString::fromStdString(error.message()));
        return;
    }
    if (status.type() != fs::file_type::regular) {
        return; // a folder, or what a link leads to, is not the program's own file
    }
    constexpr fs::perms wanted = fs::perms::owner_read | fs::perms::owner_write;
    if (status.permissions() == wanted) {
        return;
    }
    fs::permissions(path, wanted, fs::perm_options::replace | fs::perm_options::nofollow, error);
    if (error) {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
}

} // namespace quorvane
