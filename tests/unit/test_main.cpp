#include <QCoreApplication>
#include <gtest/gtest.h>

// Queued calls and timers need an application object; tests that want them delivered spin the loop.
int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
