#include "TestNames.h"

#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>

namespace quorvane::platform {

namespace {

struct Names {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<TestNames::LookUp> lookUps;
    int running = 0;
    bool gateIsOpen = true;
};

Names &names() {
    static Names instance;
    return instance;
}

using GetAddrInfo = decltype(&::getaddrinfo);

GetAddrInfo original() {
    static const auto function = reinterpret_cast<GetAddrInfo>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return function;
}

/// Adds the numeric address to the list.
int addAddress(const char *address, const char *service, const addrinfo *hints, addrinfo **list) {
    while (*list != nullptr) {
        list = &(*list)->ai_next;
    }
    return original()(address, service, hints, list);
}

int answer(const QByteArray &name, const char *service, const addrinfo *hints, addrinfo **list) {
    const int family = hints->ai_family;
    *list = nullptr;
    int result = EAI_NONAME;
    if (family != AF_INET && (name == "six.test" || name == "both.test")) {
        result = addAddress("::ffff:127.0.0.1", service, hints, list);
    }
    if (family != AF_INET6 && (name == "four.test" || name == "both.test" || name == "slow.test")) {
        result = addAddress("127.0.0.1", service, hints, list);
    }
    return result;
}

} // namespace

TestNames::TestNames() {
    const std::lock_guard lock(names().mutex);
    names().lookUps.clear();
    names().gateIsOpen = false;
}

TestNames::~TestNames() {
    std::unique_lock lock(names().mutex);
    names().gateIsOpen = true;
    names().changed.notify_all();
    names().changed.wait(lock, [] { return names().running == 0; });
}

std::vector<TestNames::LookUp> TestNames::lookUps() {
    const std::lock_guard lock(names().mutex);
    return names().lookUps;
}

extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char *name, const char *service,
                                                                  const addrinfo *hints, addrinfo **list) {
    const QByteArray host(name);
    if (hints == nullptr || !host.endsWith(".test")) {
        return original()(name, service, hints, list);
    }
    {
        std::unique_lock lock(names().mutex);
        names().lookUps.push_back({host, hints->ai_family});
        ++names().running;
        names().changed.wait(lock, [&host] { return host != "slow.test" || names().gateIsOpen; });
    }
    const int result = answer(host, service, hints, list);
    const std::lock_guard lock(names().mutex);
    --names().running;
    names().changed.notify_all();
    return result;
}

} // namespace quorvane::platform
