#include "QrvMenuItem.h"

namespace quorvane {

namespace {

quint64 nextNumber() {
    static quint64 last = 0;
    return ++last;
}

} // namespace

QrvMenuItem::QrvMenuItem(const QString &title, QObject *parent)
    : QAction(title, parent), entryId(nextNumber()) {}

QrvMenuItem::~QrvMenuItem() = default;

void QrvMenuItem::setFull(bool mark) {
    fullMark = mark;
    if (controller) {
        controller->setGold(mark);
    }
}

bool QrvMenuItem::full() const {
    return controller && controller->gold();
}

void QrvMenuItem::setItemView(std::unique_ptr<QrvMenuItemViewController> view) {
    controller = std::move(view);
}

} // namespace quorvane
