#include "SessionState.h"

SessionState &SessionState::shared() {
    static SessionState state;
    return state;
}
