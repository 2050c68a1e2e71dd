#pragma once

#include "platform/BackgroundWork.h"

#include <QObject>
#include <QPointer>

#include <deque>

namespace quorvane::fakes {

/// Background work that runs on the test's thread: each piece from the event loop, or, after hold(), when the
/// test says so.
class ManualBackgroundWork final : public platform::BackgroundWork {
public:
    void run(std::function<void()> work, QObject *context, std::function<void()> done) override {
        m_pending.push_back({std::move(work), context, std::move(done), false});
        if (!m_held) {
            QMetaObject::invokeMethod(
                &m_loop, [this] { finishAt(0); }, Qt::QueuedConnection);
        }
    }

    [[nodiscard]] bool isIdle() const override { return m_pending.empty(); }

    /// From now on nothing runs by itself.
    void hold() { m_held = true; }

    [[nodiscard]] std::size_t pending() const { return m_pending.size(); }

    /// Runs the piece without reporting its end.
    void workAt(std::size_t index) {
        Piece &piece = m_pending.at(index);
        piece.worked = true;
        piece.work();
    }

    /// The same, if there is such a piece that has not run yet.
    void workUnlessDone(std::size_t index) {
        if (index < m_pending.size() && !m_pending[index].worked) {
            workAt(index);
        }
    }

    /// Runs the piece, unless it ran already, and reports its end. False when there is none.
    bool finishAt(std::size_t index) {
        if (index >= m_pending.size()) {
            return false;
        }
        const Piece piece = std::move(m_pending[index]);
        m_pending.erase(m_pending.begin() + static_cast<std::ptrdiff_t>(index));
        if (!piece.worked) {
            piece.work();
        }
        if (piece.context) {
            piece.done();
        }
        return true;
    }

    /// Finishes everything, the first first, what is requested meanwhile included.
    void finishAll() {
        while (finishAt(0)) {
        }
    }

private:
    struct Piece {
        std::function<void()> work;
        QPointer<QObject> context;
        std::function<void()> done;
        bool worked;
    };

    QObject m_loop;
    bool m_held = false;
    std::deque<Piece> m_pending;
};

} // namespace quorvane::fakes
