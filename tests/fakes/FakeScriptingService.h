#pragma once

#include "platform/ScriptingService.h"

#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace quorvane::fakes {

/// Records shell lines instead of running them. Any thread.
///
/// The result of a line comes from the handler if one is set, else from the queue, else it is a success with
/// empty text.
class FakeScriptingService final : public platform::ScriptingService {
public:
    enum class Kind { User, Administrator };

    struct Call {
        Kind kind;
        QString line;
        /// Null for a line run as the user.
        QString user;
        QString password;
    };

    using Handler = std::function<platform::ScriptResult(const Call &)>;

    [[nodiscard]] platform::ScriptResult runAsUser(const QString &line) override {
        return answer({Kind::User, line, {}, {}});
    }

    [[nodiscard]] platform::ScriptResult runAsAdministrator(const QString &line, const QString &user,
                                                            const QString &password) override {
        return answer({Kind::Administrator, line, user, password});
    }

    [[nodiscard]] static platform::ScriptResult success(const QString &text) { return {true, text, {}, {}}; }

    [[nodiscard]] static platform::ScriptResult failure(int number, const QString &message) {
        return {false, {}, number, message};
    }

    void queueAnswer(const platform::ScriptResult &result) {
        const std::lock_guard lock(m_mutex);
        m_answers.push_back(result);
    }

    /// Runs on the caller's thread, outside any lock; may block.
    void setHandler(Handler newHandler) {
        const std::lock_guard lock(m_mutex);
        m_handler = std::move(newHandler);
    }

    [[nodiscard]] std::vector<Call> calls() const {
        const std::lock_guard lock(m_mutex);
        return m_recorded;
    }

    void clear() {
        const std::lock_guard lock(m_mutex);
        m_recorded.clear();
    }

private:
    [[nodiscard]] platform::ScriptResult answer(const Call &call) {
        Handler present;
        {
            const std::lock_guard lock(m_mutex);
            m_recorded.push_back(call);
            present = m_handler;
            if (!present && !m_answers.empty()) {
                const platform::ScriptResult result = m_answers.front();
                m_answers.pop_front();
                return result;
            }
        }
        return present ? present(call) : success(QStringLiteral(""));
    }

    mutable std::mutex m_mutex;
    std::vector<Call> m_recorded;
    std::deque<platform::ScriptResult> m_answers;
    Handler m_handler;
};

} // namespace quorvane::fakes
