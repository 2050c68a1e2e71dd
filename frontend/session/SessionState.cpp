#include "SessionState.h"

namespace quorvane {

SessionState &SessionState::shared() {
    static SessionState state;
    return state;
}

} // namespace quorvane
