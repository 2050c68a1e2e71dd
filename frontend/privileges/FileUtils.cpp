#include "FileUtils.h"

#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"

#include <filesystem>

namespace quorvane {

namespace fs = std::filesystem;

void FileUtils::checkUserDefaultsPremmision() {
    const fs::path path = platform::Platform::current().account.preferencesFile().toStdString();
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) {
        return;
    }
    if (error) {
        Diagnostics::logAlways(QString::fromStdString(error.message()));
        return;
    }
    constexpr fs::perms wanted = fs::perms::owner_read | fs::perms::owner_write;
    if (status.permissions() == wanted) {
        return;
    }
    fs::permissions(path, wanted, error);
    if (error) {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
}

} // namespace quorvane
