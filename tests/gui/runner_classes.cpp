#include "tests/gui/TestClasses.h"

#include <QApplication>
#include <QTest>

namespace quorvane {

/// Classes for the test of the programs' main().
class Passing : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void nothing() {}
};

class Failing : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void failure() { QFAIL("on purpose"); }
};

/// Its test passes, but the next class would see another style sheet.
class Leaving : public QObject {
    Q_OBJECT

private Q_SLOTS:

    void styleSheet() { qApp->setStyleSheet(QStringLiteral("QLabel { color: red; }")); }
};

} // namespace quorvane

GUI_TEST(Passing)
GUI_TEST(Failing)
GUI_TEST(Leaving)
#include "runner_classes.moc"
