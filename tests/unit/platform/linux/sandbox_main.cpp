// Runs the tests inside their own namespaces, so that they may change accounts, mounts and the network: the
// program starts itself again under unshare. Where namespaces are not available, the tests run outside and
// skip what needs them.

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
