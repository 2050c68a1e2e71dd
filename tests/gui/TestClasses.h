#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

namespace quorvane {

/// The test classes of one program. Main thread.
class TestClasses {
public:
    using Create = std::unique_ptr<QObject> (*)();

    /// Registers a class under its name. Called before main() by GUI_TEST; returns true.
    static bool add(const char *name, Create create);
    /// Runs the class that the first argument after the program's names, or every class in the order of their
    /// names. The other arguments are those of Qt Test. Returns the exit status: 0 when at least one class
    /// ran, every test passed and no class left the process changed.
    [[nodiscard]] static int run(QStringList arguments);
};

} // namespace quorvane

/// Registers a class of the namespace quorvane. Used outside the namespace, before the file's ".moc".
#define GUI_TEST(className)                                                                                  \
    namespace {                                                                                              \
    [[maybe_unused]] const bool is##className##Registered = quorvane::TestClasses::add(                      \
        #className, []() -> std::unique_ptr<QObject> { return std::make_unique<quorvane::className>(); });   \
    }
