#pragma once

#include "platform/AuthorizationService.h"

#include <QByteArray>

namespace quorvane::platform {

/// AuthorizationService over polkit's pkexec, which prompts the user through the desktop's own agent. Without
/// an agent the rights are denied.
class PkexecAuthorizationService final : public AuthorizationService {
public:
    /// An empty tool is looked up in the system's own folders.
    explicit PkexecAuthorizationService(const QByteArray &tool = {});

    [[nodiscard]] bool lookUp() override;
    /// The status is toolMissing, denied, cancelled, or the errno value of a start that failed.
    [[nodiscard]] PrivilegedProcess launch(const QString &program, const QByteArrayList &arguments,
                                           const QString &folder) override;
    [[nodiscard]] std::optional<int> wait(pid_t pid, bool block) override;

private:
    const QByteArray m_givenTool;
};

} // namespace quorvane::platform
