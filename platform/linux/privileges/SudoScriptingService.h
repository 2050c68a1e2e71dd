#pragma once

#include "platform/ScriptingService.h"

#include <QByteArray>

namespace quorvane::platform {

/// Runs shell lines through /bin/sh; as administrator through sudo, or su and then sudo for another account
/// than the user's own, or su alone for root. The password is checked even when the program runs as root.
///
/// The password is sent to standard input only, one line for each prompt. Lines run in the root folder, with
/// the resources folder first in PATH, without input, with LC_ALL=C and without the program's own environment
/// except HOME, USER and LOGNAME.
class SudoScriptingService final : public ScriptingService {
public:
    explicit SudoScriptingService(const QString &resourcesFolder);

    [[nodiscard]] ScriptResult runAsUser(const QString &line) override;
    [[nodiscard]] ScriptResult runAsAdministrator(const QString &line, const QString &user,
                                                  const QString &password) override;

private:
    const QByteArray m_resources;
};

} // namespace quorvane::platform
