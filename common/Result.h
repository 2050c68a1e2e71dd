#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace quorvane {

/// What went wrong, as one sentence for the user or the administrator.
struct Failure {
    std::string message;
};

/// A value, or the reason why there is none. Check `ok()` before calling `value()` or `error()`: the other of
/// the two throws std::bad_variant_access.
template <typename Value = void>
class [[nodiscard]] Result {
public:
    Result(Value value) : m_content(std::move(value)) {}

    Result(Failure failure) : m_content(std::move(failure)) {}

    [[nodiscard]] bool ok() const { return std::holds_alternative<Value>(m_content); }

    explicit operator bool() const { return ok(); }

    [[nodiscard]] const Value &value() const & { return std::get<Value>(m_content); }

    /// Moves the value out: `std::move(result).value()`.
    [[nodiscard]] Value value() && { return std::get<Value>(std::move(m_content)); }

    [[nodiscard]] const std::string &error() const { return std::get<Failure>(m_content).message; }

private:
    std::variant<Value, Failure> m_content;
};

/// Success, which is also the default, or the reason for a failure. Check `ok()` before calling `error()`.
template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;

    Result(Failure failure) : m_failure(std::move(failure)) {}

    [[nodiscard]] bool ok() const { return !m_failure.has_value(); }

    explicit operator bool() const { return ok(); }

    [[nodiscard]] const std::string &error() const { return m_failure.value().message; }

private:
    std::optional<Failure> m_failure;
};

} // namespace quorvane
