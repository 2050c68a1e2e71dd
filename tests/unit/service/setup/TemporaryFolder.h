#pragma once

#include "setup/FileStore.h"
#include "setup/ServiceFile.h"

#include <filesystem>
#include <stdexcept>
#include <unistd.h>

namespace quorvane::service::test {

/// A folder of its own, which is removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string form = std::filesystem::temp_directory_path() / "qrvsetup-XXXXXX";
        if (mkdtemp(form.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        m_path = form;
    }

    ~TemporaryFolder() { std::filesystem::remove_all(m_path); }

    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] std::string file(const std::string &name) const { return m_path + '/' + name; }

    [[nodiscard]] Places places() const {
        Places places;
        places.folder = m_path;
        return places;
    }

private:
    std::string m_path;
};

/// All files belong to the user who runs the test.
inline FileStore ownFiles() {
    const Owner self{geteuid(), getegid()};
    return FileStore(Owners{self, self, self, self.group});
}

} // namespace quorvane::service::test
