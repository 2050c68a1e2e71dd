#include "ModalTurn.h"

namespace quorvane {

ModalTurn &ModalTurn::shared() {
    static ModalTurn instance;
    return instance;
}

void ModalTurn::request(Begin begin) {
    m_waiting.push_back(std::move(begin));
    next();
}

void ModalTurn::clear() {
    m_waiting.clear();
    m_turn.reset();
}

void ModalTurn::next() {
    while (!m_turn && !m_waiting.empty()) {
        const Begin begin = std::move(m_waiting.front());
        m_waiting.pop_front();
        const auto turn = std::make_shared<bool>(true);
        m_turn = turn;
        begin([this, turn] {
            if (m_turn == turn) { // else it was forgotten, or has ended already
                m_turn.reset();
                next();
            }
        });
    }
}

} // namespace quorvane
