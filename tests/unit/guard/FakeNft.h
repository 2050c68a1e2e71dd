#pragma once

#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace quorvane::guard {

/// The commands that the fake nft has received, and whether it accepts them.
class FakeNft {
public:
    FakeNft() { clear(); }

    ~FakeNft() { clear(); }

    FakeNft(const FakeNft &) = delete;
    FakeNft &operator=(const FakeNft &) = delete;

    [[nodiscard]] static std::string program() { return GUARD_FOLDER "/fake-nft"; }

    /// The note of a lock that is closed.
    [[nodiscard]] static std::string note() { return GUARD_FOLDER "/network.lock"; }

    static void closeLock() { std::ofstream(note()) << ""; }

    static void refuse() { std::ofstream(program() + ".refuses") << ""; }

    [[nodiscard]] static std::vector<std::string> calls() {
        std::ifstream file(program() + ".calls");
        std::vector<std::string> lines;
        for (std::string line; std::getline(file, line);) {
            lines.push_back(line);
        }
        return lines;
    }

private:
    static void clear() {
        for (const std::string &path : {note(), program() + ".calls", program() + ".refuses"}) {
            unlink(path.c_str());
        }
    }
};

} // namespace quorvane::guard
