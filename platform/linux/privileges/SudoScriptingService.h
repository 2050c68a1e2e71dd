#pragma once

#include "platform/ScriptingService.h"

#include <QByteArray>

namespace quorvane::platform {

/// Runs shell lines through /bin/sh; as administrator through sudo, or su and then sudo for another account
/// than the user's own, or su alone for root. The password is checked even when the program runs as root.
///
/// The password is sent to standard input only, one line for each prompt for it: sudo's, which has words of
/// our own, and su's. Any other question ends the attempt and is never answered. Lines run in the root
/// folder, with the resources folder first in PATH, without input, with LC_ALL=C and without the program's
/// own environment except HOME, USER and LOGNAME.
class SudoScriptingService final : public ScriptingService {
public:
    /// longSilence: milliseconds without a word from sudo and su after which nothing is answered any more.
    explicit SudoScriptingService(const QString &resourcesFolder, int longSilence = 120000);

    [[nodiscard]] ScriptResult runAsUser(const QString &line) override;
    [[nodiscard]] ScriptResult runAsAdministrator(const QString &line, const QString &user,
                                                  const QString &password) override;

private:
    const QByteArray m_resources;
    const int m_longSilence;
};

} // namespace quorvane::platform
