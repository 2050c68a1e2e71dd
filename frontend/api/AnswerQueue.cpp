#include "AnswerQueue.h"

#include "ServerModel.h"
#include "platform/BackgroundWork.h"
#include "platform/Platform.h"

#include <QPointer>
#include <memory>
#include <utility>

namespace quorvane {

std::optional<ReadAnswer> ReadAnswer::read(const QByteArray &text) {
    auto table = AnswerTable::read(text);
    if (!table) {
        return std::nullopt;
    }
    ReadAnswer answer;
    answer.locations = ServerModel::parseLocations(table->value(QStringLiteral("LOCATIONS")));
    answer.servers = ServerModel::parseServers(table->servers, table->value(QStringLiteral("VPNUser")),
                                               table->value(QStringLiteral("VPNPass")), QString());
    answer.table = *std::move(table);
    return answer;
}

void AnswerQueue::inOrder(const Step &step) {
    if (m_isReading || !m_waiting.empty()) {
        m_waiting.push_back(step);
    } else {
        step();
    }
}

void AnswerQueue::read(const QByteArray &text, const Receiver &receiver) {
    inOrder([this, text, receiver] { begin(text, receiver); });
}

void AnswerQueue::begin(const QByteArray &text, const Receiver &receiver) {
    if (text.size() <= longestReadAtOnce) {
        receiver(ReadAnswer::read(text));
        return;
    }
    m_isReading = true;
    const auto answer = std::make_shared<std::optional<ReadAnswer>>();
    platform::Platform::current().background->run([text, answer] { *answer = ReadAnswer::read(text); }, this,
                                                  [this, receiver, answer] {
                                                      const QPointer self(this);
                                                      m_isReading = false;
                                                      receiver(*answer);
                                                      if (self) {
                                                          runWaiting();
                                                      }
                                                  });
}

void AnswerQueue::runWaiting() {
    const QPointer self(this);
    while (self && !m_isReading && !m_waiting.empty()) {
        const Step step = std::move(m_waiting.front());
        m_waiting.pop_front();
        step();
    }
}

} // namespace quorvane
