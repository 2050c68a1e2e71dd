#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Values made of the fuzzer's bytes, in their order; zeros when they are used up.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : m_rest(bytes) {}

    [[nodiscard]] bool areUsedUp() const { return m_rest.empty(); }

    [[nodiscard]] std::size_t size() const { return m_rest.size(); }

    unsigned char next() {
        if (m_rest.empty()) {
            return 0;
        }
        const auto byte = static_cast<unsigned char>(m_rest.front());
        m_rest.remove_prefix(1);
        return byte;
    }

    unsigned number() {
        const unsigned high = next();
        return high * 256 + next();
    }

    std::string text(std::size_t size) {
        std::string made(m_rest.substr(0, size));
        m_rest.remove_prefix(made.size());
        made.resize(size, '\0');
        return made;
    }

private:
    std::string_view m_rest;
};
