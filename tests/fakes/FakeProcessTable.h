#pragma once

#include "platform/ProcessTable.h"

#include <QByteArrayList>

#include <algorithm>
#include <mutex>

namespace quorvane::fakes {

/// A process table with the names that the test gives it. Any thread.
class FakeProcessTable final : public platform::ProcessTable {
public:
    [[nodiscard]] int query(platform::ProcessRecord *rows, std::size_t &count) const override {
        const std::lock_guard lock(mutex);
        ++queryCount;
        if (failure != 0) {
            return failure;
        }
        const auto present = static_cast<std::size_t>(names.size());
        if (rows == nullptr) {
            count = present;
            return 0;
        }
        if (secondFailure != 0) {
            return secondFailure;
        }
        if (growthsLeft > 0) {
            --growthsLeft;
            names.append("newcomer");
        }
        if (static_cast<std::size_t>(names.size()) > count) {
            return ENOMEM;
        }
        for (qsizetype row = 0; row < names.size(); ++row) {
            rows[row] = record(row);
        }
        count = static_cast<std::size_t>(names.size());
        return 0;
    }

    /// Names beyond 15 characters are cut, as the kernel does.
    void setNames(const QByteArrayList &newNames) {
        const std::lock_guard lock(mutex);
        names = newNames;
    }

    /// Adds a process "newcomer" before each of the next so many second queries.
    void growBetweenQueries(int times) {
        const std::lock_guard lock(mutex);
        growthsLeft = times;
    }

    /// Makes every query fail with the errno value; 0 ends that.
    void failWith(int number) {
        const std::lock_guard lock(mutex);
        failure = number;
    }

    /// Makes only the queries for rows fail.
    void failSecondQueryWith(int number) {
        const std::lock_guard lock(mutex);
        secondFailure = number;
    }

    [[nodiscard]] int queries() const {
        const std::lock_guard lock(mutex);
        return queryCount;
    }

private:
    [[nodiscard]] platform::ProcessRecord record(qsizetype row) const {
        platform::ProcessRecord result;
        result.pid = static_cast<pid_t>(row + 1);
        const QByteArray name = names[row].left(static_cast<qsizetype>(result.name.size()) - 1);
        std::copy(name.begin(), name.end(), result.name.begin());
        return result;
    }

    mutable std::mutex mutex;
    mutable QByteArrayList names;
    mutable int growthsLeft = 0;
    mutable int queryCount = 0;
    int failure = 0;
    int secondFailure = 0;
};

} // namespace quorvane::fakes
