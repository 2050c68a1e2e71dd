#include "QrvMenuItem.h"

namespace quorvane {

namespace {

quint64 nextNumber() {
    static quint64 last = 0;
    return ++last;
}

} // namespace

QrvMenuItem::QrvMenuItem(const QString &title, QObject *parent)
    : QAction(title, parent), m_entryId(nextNumber()) {}

QrvMenuItem::~QrvMenuItem() = default;

void QrvMenuItem::setFull(bool mark) {
    m_fullMark = mark;
    if (m_controller) {
        m_controller->setGold(mark);
    }
}

bool QrvMenuItem::full() const {
    return m_controller && m_controller->gold();
}

void QrvMenuItem::setItemView(std::unique_ptr<QrvMenuItemViewController> controller) {
    m_controller = std::move(controller);
}

} // namespace quorvane
