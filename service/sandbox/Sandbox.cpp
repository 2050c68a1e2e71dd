#include "Sandbox.h"

#include "Steps.h"

namespace quorvane::service {

Result<> confineProcess(const Needs &needs) {
    if (auto dropped = dropPrivileges(); !dropped) {
        return dropped;
    }
    if (auto restricted = restrictFileSystem(needs.writableFolders); !restricted) {
        return restricted;
    }
    // The last one, since it also refuses the calls of the other steps.
    return restrictSystemCalls(needs.connects);
}

} // namespace quorvane::service
