#include "FolderLock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>

namespace quorvane::service {

Result<> FolderLock::acquire(const std::string &path) {
    m_file.reset(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!m_file.isOpen()) {
        return Failure{"runtime_folder: cannot open " + path + ": " + std::strerror(errno)};
    }
    if (flock(m_file.get(), LOCK_EX | LOCK_NB) != 0) {
        return Failure{"runtime_folder: another service uses it"};
    }
    return {};
}

} // namespace quorvane::service
