// Runs the tests inside namespaces of their own, so that they may change accounts, mounts and the
// network as they like: the program starts itself again below unshare. Where namespaces are not to be had
// the tests run outside and skip what needs them.

#include "Sandbox.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace quorvane::platform;

int main(int argc, char **argv) {
    if (!sandbox::wasTried()) {
        sandbox::enter(argv);
    }
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
