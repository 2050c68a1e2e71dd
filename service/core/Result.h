#pragma once

#include <string>
#include <utility>
#include <variant>

namespace quorvane::service {

/// What went wrong, as one sentence for the person who runs the service.
struct Failure {
    std::string message;
};

/// A value or the reason why there is none. Ask `ok()` before `value()` or `error()`.
template <typename Value>
class [[nodiscard]] Result {
public:
    Result(Value value) : m_content(std::move(value)) {}

    Result(Failure failure) : m_content(std::move(failure)) {}

    [[nodiscard]] bool ok() const { return std::holds_alternative<Value>(m_content); }

    explicit operator bool() const { return ok(); }

    [[nodiscard]] const Value &value() const { return std::get<Value>(m_content); }

    [[nodiscard]] Value take() { return std::move(std::get<Value>(m_content)); }

    [[nodiscard]] const std::string &error() const { return std::get<Failure>(m_content).message; }

private:
    std::variant<Value, Failure> m_content;
};

} // namespace quorvane::service
