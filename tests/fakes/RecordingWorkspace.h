#pragma once

#include "platform/Workspace.h"

#include <QStringList>

#include <vector>

namespace quorvane::fakes {

/// Records the requests to the desktop. Main thread.
class RecordingWorkspace final : public platform::Workspace {
public:
    struct Autostart {
        QString program;
        bool enabled;
    };

    struct Notification {
        QString title;
        QString text;
    };

    bool openUrl(const QString &url) override {
        openedUrls.append(url);
        return openingSucceeds;
    }

    bool openPage(const QString &path) override {
        openedPages.append(path);
        return openingSucceeds;
    }

    [[nodiscard]] bool acquireSingleInstance(const QString &identifier) override {
        instanceIdentifiers.append(identifier);
        return firstInstance;
    }

    bool setAutostart(const QString &program, bool enabled) override {
        autostarts.push_back({program, enabled});
        return autostartSucceeds;
    }

    void notify(const QString &title, const QString &text) override {
        notifications.push_back({title, text});
    }

    QStringList openedUrls;
    QStringList openedPages;
    QStringList instanceIdentifiers;
    std::vector<Autostart> autostarts;
    std::vector<Notification> notifications;
    bool openingSucceeds = true;
    bool firstInstance = true;
    bool autostartSucceeds = true;
};

} // namespace quorvane::fakes
