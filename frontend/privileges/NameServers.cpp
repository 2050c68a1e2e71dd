#include "NameServers.h"

#include "RememberedDns.h"
#include "ScriptUtil.h"
#include "frontend/support/EventQueue.h"
#include "frontend/support/Preferences.h"

namespace quorvane {

namespace {

/// What ScriptUtil needs a thread of its own for.
QString putBack() {
    QString problem;
    ScriptUtil script;
    script.restoreSystemDns(problem);
    return problem;
}

} // namespace

bool NameServers::areRestored() {
    return Preferences::boolean(Preference::RestoresDns);
}

bool NameServers::isAnythingRemembered() {
    return !RememberedDns::stored().isEmpty();
}

Task<> NameServers::setForSession(EventQueue &events) {
    if (!areRestored()) {
        co_return;
    }
    co_await events.background([] {
        ScriptUtil script;
        if (!script.getSystemDns()) {
            script.setSystemDns();
        }
    });
}

Task<> NameServers::putBackAfterSession(EventQueue &events) {
    if (areRestored()) {
        co_await putBackNow(events);
    }
}

Task<QString> NameServers::putBackNow(EventQueue &events) {
    if (!isAnythingRemembered()) {
        co_return QString();
    }
    co_return co_await events.background([] { return putBack(); });
}

} // namespace quorvane
