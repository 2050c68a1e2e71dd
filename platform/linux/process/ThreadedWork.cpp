#include "ThreadedWork.h"

#include <QPointer>

#include <limits>

namespace quorvane::platform {

ThreadedWork::ThreadedWork() {
    // Work mostly waits for other programs, so the number of processors does not limit it.
    m_threads.setMaxThreadCount(std::numeric_limits<int>::max());
}

ThreadedWork::~ThreadedWork() {
    m_threads.waitForDone();
}

void ThreadedWork::run(std::function<void()> work, QObject *context, std::function<void()> done) {
    auto finish = [context = QPointer(context), done = std::move(done)] {
        if (context) {
            done();
        }
    };
    m_threads.start([this, work = std::move(work), finish = std::move(finish)] {
        work();
        QMetaObject::invokeMethod(&m_mainThread, finish, Qt::QueuedConnection);
    });
}

} // namespace quorvane::platform
