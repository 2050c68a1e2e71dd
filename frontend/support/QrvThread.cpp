#include "QrvThread.h"

#include <unistd.h>

namespace quorvane {

namespace {

constexpr std::int32_t success = 0;
constexpr std::int32_t failure = -1;

} // namespace

QrvThread::QrvThread() : m_record(std::make_shared<Record>()) {}

QrvThread::Record::Record(const Task &given) : task(given) {}

QrvThread::~QrvThread() {
    cancel();
    releaseHandle();
}

void QrvThread::releaseHandle() {
    if (m_handleHeld) {
        pthread_detach(m_hThread);
        m_handleHeld = false;
    }
}

void QrvThread::Record::set(std::int32_t state) {
    const std::lock_guard lock(statusMutex);
    threadState = state;
}

void *QrvThread::Task::execute() const {
    return userThreadFunc(userArg1, userArg2, userArg3);
}

void QrvThread::setThreadFunction(Function function, void *arg1, void *arg2, void *arg3) {
    m_task = {function, arg1, arg2, arg3};
}

std::int32_t QrvThread::run() {
    if (m_task.userThreadFunc == nullptr) {
        return failure;
    }
    const std::int32_t state = getState();
    if (state == Running || state == Detached) {
        return success;
    }
    releaseHandle(); // of an earlier thread that was never joined
    // A record of its own: a cancelled thread may still run, and must not report its end as this one's.
    const auto record = std::make_shared<Record>(m_task);
    auto argument = std::make_unique<std::shared_ptr<Record>>(record);
    {
        // Locked during the creation, so that the new thread cannot report its end before `alive` is set.
        const std::lock_guard lock(record->statusMutex);
        if (pthread_create(&m_hThread, nullptr, &QrvThread::entry, argument.get()) == 0) {
            static_cast<void>(argument.release()); // the new thread owns it now
            record->alive = true;
            record->threadState = Running;
            m_handleHeld = true;
            m_record = record;
            return success;
        }
    }
    setState(Failed);
    return failure;
}

std::int32_t QrvThread::run(Function function, void *arg1, void *arg2, void *arg3) {
    setThreadFunction(function, arg1, arg2, arg3);
    return run();
}

void *QrvThread::executeThreadFunction() {
    return m_task.execute();
}

std::int32_t QrvThread::detach() {
    if (m_record->threadState != Running || !m_handleHeld || pthread_detach(m_hThread) != 0) {
        return failure;
    }
    m_handleHeld = false;
    m_record->threadState = Detached;
    return success;
}

std::int32_t QrvThread::join(void *&result) {
    // A thread that starts late sets its state to 1 again after a detach, although its handle is released.
    if (m_record->threadState != Running || !m_handleHeld || pthread_join(m_hThread, &result) != 0) {
        return failure;
    }
    m_handleHeld = false;
    m_record->threadState = Finished;
    return success;
}

std::int32_t QrvThread::cancel() {
    const std::int32_t state = getState();
    if (state != Running && state != Detached) {
        return failure;
    }
    const std::lock_guard lock(m_record->statusMutex);
    // The handle of a detached thread that has ended must not be used.
    const bool cancelled = m_record->alive && pthread_cancel(m_hThread) == 0;
    m_record->threadState = cancelled ? NotStarted : Failed;
    return cancelled ? success : failure;
}

void QrvThread::setState(std::int32_t state) {
    m_record->set(state);
}

std::int32_t QrvThread::getState() const {
    const std::lock_guard lock(m_record->statusMutex);
    return m_record->threadState;
}

// A cancellation leaves this frame without running its end. The address sanitizer would therefore keep its
// marks around the frame's variable, and report an error while the callers' frames are unwound.
__attribute__((no_sanitize("address"))) void QrvThread::cancellationPoint(std::uint32_t microseconds) {
    usleep(microseconds);
    int previous = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &previous);
    pthread_testcancel();
    pthread_setcancelstate(previous, nullptr);
}

void *QrvThread::entry(void *argument) {
    if (argument == nullptr) {
        return nullptr;
    }
    // A cancellation unwinds this frame, so the share of the record is always released.
    int previous = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous);
    const std::unique_ptr<std::shared_ptr<Record>> owner(static_cast<std::shared_ptr<Record> *>(argument));
    const std::shared_ptr<Record> record = *owner;

    struct AliveGuard {
        Record &record;

        ~AliveGuard() {
            const std::lock_guard lock(record.statusMutex);
            record.alive = false;
        }
    } guard{*record};

    record->set(Running);
    void *result = record->task.execute();
    record->set(Finished);
    return result;
}

} // namespace quorvane
