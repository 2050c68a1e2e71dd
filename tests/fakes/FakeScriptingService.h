#pragma once

#include "platform/ScriptingService.h"

#include <deque>
#include <functional>
#include <mutex>
#include <vector>

namespace quorvane::fakes {

/// Records shell lines instead of running them. Any thread.
///
/// The answer to a line is, in this order: the handler's if one is set, the next of the queue, a
/// success with empty text.
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
        const std::lock_guard lock(mutex);
        answers.push_back(result);
    }

    /// Runs on the caller's thread, outside any lock; may block.
    void setHandler(Handler newHandler) {
        const std::lock_guard lock(mutex);
        handler = std::move(newHandler);
    }

    [[nodiscard]] std::vector<Call> calls() const {
        const std::lock_guard lock(mutex);
        return recorded;
    }

    void clear() {
        const std::lock_guard lock(mutex);
        recorded.clear();
    }

private:
    [[nodiscard]] platform::ScriptResult answer(const Call &call) {
        Handler present;
        {
            const std::lock_guard lock(mutex);
            recorded.push_back(call);
            present = handler;
            if (!present && !answers.empty()) {
                const platform::ScriptResult result = answers.front();
                answers.pop_front();
                return result;
            }
        }
        return present ? present(call) : success(QStringLiteral(""));
    }

    mutable std::mutex mutex;
    std::vector<Call> recorded;
    std::deque<platform::ScriptResult> answers;
    Handler handler;
};

} // namespace quorvane::fakes
