#pragma once

#include <QByteArray>

#include <vector>

namespace quorvane::platform {

/// The name look-up of the test program: getaddrinfo() of the whole process answers for names of this list
/// and refuses all others. Numeric addresses are the C library's.
///
/// four.test has the IPv4 address 127.0.0.1; six.test the IPv6 address ::ffff:127.0.0.1; both.test has
/// both; slow.test answers only when the gate is open.
class TestNames {
public:
    /// Forgets the former look-ups; the gate of slow.test is closed.
    TestNames();
    /// Opens the gate and waits until no look-up is under way.
    ~TestNames();
    TestNames(const TestNames &) = delete;
    TestNames &operator=(const TestNames &) = delete;

    struct LookUp {
        QByteArray name;
        int family;

        bool operator==(const LookUp &) const = default;
    };

    [[nodiscard]] static std::vector<LookUp> lookUps();
};

} // namespace quorvane::platform
