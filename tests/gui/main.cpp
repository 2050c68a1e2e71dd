#include "tests/gui/TestClasses.h"

#include <QApplication>

int main(int argc, char **argv) {
    const QApplication application(argc, argv);
    // As in Qt's own test programs: the same sizes of text on every screen.
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    return quorvane::TestClasses::run(QCoreApplication::arguments());
}
