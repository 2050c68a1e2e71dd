#pragma once

#include "fakes/TestPlatform.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/SessionReset.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/ModalTurn.h"
#include "frontend/ui/shared/Alerts.h"
#include "tests/Text.h"
#include "tests/gui/TestClasses.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

namespace quorvane {

/// A new platform of fakes, empty session values, and alerts that are recorded instead of shown.
class GuiFixture {
public:
    GuiFixture() {
        QrvAPI::forgetProcessWideValues();
        SessionState::shared() = {};
        QrvCredentials::sharedInstance().saveVpnUserName({}, {});
        QGuiApplication::clipboard()->clear();
        for (const char *name : {"de", "us", "xx", "Tray", "TrayLock", "appmain", "appwait", "applock"}) {
            addImage(text(name));
        }
        Alerts::shared().setPresenter([this](const Alert &alert) { alerts.append(alert); });
    }

    ~GuiFixture() {
        SessionReset::setTarget(nullptr, {});
        Alerts::shared().setPresenter({});
        ModalTurn::shared().clear();
        SessionState::shared() = {};
    }

    GuiFixture(const GuiFixture &) = delete;
    GuiFixture &operator=(const GuiFixture &) = delete;

    void addImage(const QString &name, const QSize &size = QSize(8, 6)) {
        const QString folder = services.platform().bundle->resourcesPath() + text("/images");
        QDir().mkpath(folder);
        QImage image(size, QImage::Format_ARGB32);
        image.fill(Qt::red);
        image.save(folder + QChar(u'/') + name + text(".png"));
    }

    fakes::TestPlatform services;
    QList<Alert> alerts;
};

} // namespace quorvane
