#pragma once

#include "common/Result.h"

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quorvane::service {

/// A user and a group of the system.
struct Owner {
    uid_t user = 0;
    gid_t group = 0;
};

/// Who may read a file.
enum class Readers {
    All,     ///< root's, mode 644
    Members, ///< root's, and of the service's group, which has all of its users: mode 640
    Api,     ///< the user's of the processes that answer requests, mode 600
    Gateway, ///< the user's of the processes that lend addresses, mode 600
    Root,    ///< root's, mode 600
};

/// Those to whom the files of the setup belong.
struct Owners {
    Owner root;
    Owner api;
    Owner gateway;
    gid_t members = 0;
};

/// Writes files of the setup: whole or not at all, private from the first byte, and only when their content
/// differs.
class FileStore {
public:
    explicit FileStore(const Owners &owners) : m_owners(owners) {}

    /// Nothing when there is no such file.
    [[nodiscard]] static Result<std::string> text(const std::string &path);
    [[nodiscard]] static bool exists(const std::string &path);

    /// Makes the file have this content, owner and mode.
    Result<> put(const std::string &path, std::string_view text, Readers readers);
    /// Makes a file that exists have the owner and mode.
    Result<> adopt(const std::string &path, Readers readers) const;

    /// The paths of the files that were written, in order.
    [[nodiscard]] const std::vector<std::string> &written() const { return m_written; }

private:
    [[nodiscard]] Owner owner(Readers readers) const;

    Owners m_owners;
    std::vector<std::string> m_written;
};

} // namespace quorvane::service
