#include "FileStore.h"

#include "common/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

mode_t modeOf(Readers readers) {
    switch (readers) {
    case Readers::All:
        return 0644;
    case Readers::Members:
        return 0640;
    case Readers::Api:
    case Readers::Gateway:
    case Readers::Root:
        break;
    }
    return 0600;
}

Failure failure(const std::string &what, const std::string &path) {
    return Failure{"cannot " + what + ' ' + path + ": " + std::strerror(errno)};
}

bool writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return true;
}

Result<> own(int file, const std::string &path, Owner owner, mode_t mode) {
    struct stat state {};

    if (fstat(file, &state) != 0) {
        return failure("read", path);
    }
    if ((state.st_uid != owner.user || state.st_gid != owner.group) &&
        fchown(file, owner.user, owner.group) != 0) {
        return failure("change the owner of", path);
    }
    if ((state.st_mode & 07777U) != mode && fchmod(file, mode) != 0) {
        return failure("change the mode of", path);
    }
    return {};
}

} // namespace

Owner FileStore::owner(Readers readers) const {
    switch (readers) {
    case Readers::Api:
        return m_owners.api;
    case Readers::Gateway:
        return m_owners.gateway;
    case Readers::Members:
        return {m_owners.root.user, m_owners.members};
    case Readers::All:
    case Readers::Root:
        break;
    }
    return m_owners.root;
}

bool FileStore::exists(const std::string &path) {
    return access(path.c_str(), F_OK) == 0;
}

Result<std::string> FileStore::text(const std::string &path) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::string text;
    std::array<char, 65536> part{};
    ssize_t count = -1;
    while (file.isOpen() && (count = read(file.get(), part.data(), part.size())) > 0) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return count == 0 ? Result<std::string>(std::move(text)) : failure("read", path);
}

Result<> FileStore::adopt(const std::string &path, Readers readers) const {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    return file.isOpen() ? own(file.get(), path, owner(readers), modeOf(readers)) : failure("read", path);
}

Result<> FileStore::put(const std::string &path, std::string_view text, Readers readers) {
    if (const auto present = FileStore::text(path); present && present.value() == text) {
        return adopt(path, readers);
    }
    const std::string incomplete = path + ".new";
    unlink(incomplete.c_str()); // an interrupted run may have left it
    const FileDescriptor file(
        open(incomplete.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    Result<> done;
    if (!file.isOpen() || !writeAll(file.get(), text)) {
        done = failure("write", path);
    } else if (done = own(file.get(), path, owner(readers), modeOf(readers));
               done && (fsync(file.get()) != 0 || rename(incomplete.c_str(), path.c_str()) != 0)) {
        done = failure("write", path);
    }
    if (!done) {
        unlink(incomplete.c_str());
        return done;
    }
    const std::string folder = std::filesystem::path(path).parent_path();
    const FileDescriptor parent(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent.isOpen() || fsync(parent.get()) != 0) {
        return failure("write", folder);
    }
    m_written.push_back(path);
    return {};
}

} // namespace quorvane::service
