#pragma once

#include "AnswerTable.h"
#include "QrvLocation.h"
#include "QrvVpnDataList.h"

#include <QObject>
#include <deque>
#include <functional>
#include <optional>

namespace quorvane {

/// One answer of the service with its lists ready for use.
struct ReadAnswer {
    AnswerTable table;
    QrvLocationList locations; ///< of the line "LOCATIONS", sorted
    QrvVpnDataList servers;    ///< of the lines "Server", sorted

    /// Absent when the text is null or no answer. Any thread.
    [[nodiscard]] static std::optional<ReadAnswer> read(const QByteArray &text);
};

/// Reads answers and hands them over in their order. A short answer is read at once. A long one is read on a
/// background thread, because its lists would hold up the windows; what arrives meanwhile waits until it was
/// handed over. Main thread.
class AnswerQueue final : public QObject {
    Q_OBJECT

public:
    /// Bytes of an answer that is read at once: about a thousand servers.
    static constexpr qint64 longestReadAtOnce = 128 * 1024;

    using Step = std::function<void()>;
    using Receiver = std::function<void(const std::optional<ReadAnswer> &)>;

    /// Reads the text and calls the receiver on the main thread.
    void read(const QByteArray &text, const Receiver &receiver);
    /// Runs the step at once, or after the answers that are still being read.
    void inOrder(const Step &step);

private:
    void begin(const QByteArray &text, const Receiver &receiver);
    void runWaiting();

    bool m_isReading = false;
    std::deque<Step> m_waiting;
};

} // namespace quorvane
