#pragma once

#include "platform/ProcessTable.h"

#include <QByteArrayList>

#include <algorithm>
#include <mutex>

namespace quorvane::fakes {

/// A process table whose names the test sets. Any thread.
class FakeProcessTable final : public platform::ProcessTable {
public:
    [[nodiscard]] int query(platform::ProcessRecord *rows, std::size_t &count) const override {
        const std::lock_guard lock(m_mutex);
        ++m_queryCount;
        if (m_failure != 0) {
            return m_failure;
        }
        const auto present = static_cast<std::size_t>(m_names.size());
        if (rows == nullptr) {
            count = present;
            return 0;
        }
        if (m_secondFailure != 0) {
            return m_secondFailure;
        }
        if (m_growthsLeft > 0) {
            --m_growthsLeft;
            m_names.append("newcomer");
        }
        if (static_cast<std::size_t>(m_names.size()) > count) {
            return ENOMEM;
        }
        for (qsizetype row = 0; row < m_names.size(); ++row) {
            rows[row] = record(row);
        }
        count = static_cast<std::size_t>(m_names.size());
        return 0;
    }

    [[nodiscard]] bool showsOtherUsers() const override {
        const std::lock_guard lock(m_mutex);
        return m_showsOthers;
    }

    void setShowsOtherUsers(bool shows) {
        const std::lock_guard lock(m_mutex);
        m_showsOthers = shows;
    }

    /// Names longer than 15 characters are truncated, as by the kernel.
    void setNames(const QByteArrayList &newNames) {
        const std::lock_guard lock(m_mutex);
        m_names = newNames;
    }

    /// Adds a process "newcomer" before the second query, as many times as given.
    void growBetweenQueries(int times) {
        const std::lock_guard lock(m_mutex);
        m_growthsLeft = times;
    }

    /// Makes every query fail with the errno value; 0 stops that.
    void failWith(int number) {
        const std::lock_guard lock(m_mutex);
        m_failure = number;
    }

    /// Makes only the queries for rows fail.
    void failSecondQueryWith(int number) {
        const std::lock_guard lock(m_mutex);
        m_secondFailure = number;
    }

    [[nodiscard]] int queries() const {
        const std::lock_guard lock(m_mutex);
        return m_queryCount;
    }

private:
    [[nodiscard]] platform::ProcessRecord record(qsizetype row) const {
        platform::ProcessRecord result;
        result.pid = static_cast<pid_t>(row + 1);
        const QByteArray name = m_names[row].left(static_cast<qsizetype>(result.name.size()) - 1);
        std::copy(name.begin(), name.end(), result.name.begin());
        return result;
    }

    mutable std::mutex m_mutex;
    mutable QByteArrayList m_names;
    mutable int m_growthsLeft = 0;
    mutable int m_queryCount = 0;
    int m_failure = 0;
    int m_secondFailure = 0;
    bool m_showsOthers = true;
};

} // namespace quorvane::fakes
