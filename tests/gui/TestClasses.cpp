#include "tests/gui/TestClasses.h"

#include "tests/gui/ProcessState.h"

#include <QTest>
#include <cstdio>
#include <map>

namespace quorvane {

namespace {

std::map<QString, TestClasses::Create> &all() {
    static std::map<QString, TestClasses::Create> classes;
    return classes;
}

bool passes(const QString &name, TestClasses::Create create, const QStringList &arguments) {
    const ProcessState before;
    bool passed = QTest::qExec(create().get(), arguments) == 0;
    const QStringList changes = ProcessState().changesSince(before);
    for (const QString &change : changes) {
        std::fprintf(stderr, "%s left the process changed: %s\n", qPrintable(name), qPrintable(change));
        passed = false;
    }
    return passed;
}

} // namespace

bool TestClasses::add(const char *name, Create create) {
    all().insert_or_assign(QString::fromLatin1(name), create);
    return true;
}

int TestClasses::run(QStringList arguments) {
    std::map<QString, Create> chosen = all();
    if (arguments.size() > 1 && !arguments.at(1).startsWith(u'-')) {
        const QString name = arguments.takeAt(1);
        if (chosen.count(name) == 0) {
            std::fprintf(stderr, "%s is not among the classes of this program:\n", qPrintable(name));
            for (const auto &[known, create] : chosen) {
                std::fprintf(stderr, "  %s\n", qPrintable(known));
            }
            return 2;
        }
        chosen = {{name, chosen.at(name)}};
    }
    QStringList failed;
    for (const auto &[name, create] : chosen) {
        if (!passes(name, create, arguments)) {
            failed.append(name);
        }
    }
    std::printf("%zu classes ran, %d failed: %s\n", chosen.size(), static_cast<int>(failed.size()),
                qPrintable(failed.join(u' ')));
    return chosen.empty() || !failed.isEmpty() ? 1 : 0;
}

} // namespace quorvane
