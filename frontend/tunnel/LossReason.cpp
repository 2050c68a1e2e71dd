#include "LossReason.h"

#include "common/OpenVpnMarkers.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(quorvane::LossReason)

public:
    static QString silent() { return tr("The tunnel was lost: the VPN server does not answer."); }

    static QString ended() { return tr("The tunnel was lost: OpenVPN has ended."); }

    static QString killed() { return tr("The tunnel was lost: OpenVPN was killed."); }

    static QString device() { return tr("The tunnel was lost: its network device is gone."); }

    static QString routes() { return tr("The tunnel was lost: its routes were changed."); }
};

/// What OpenVPN wrote after the tunnel had come up.
QString linesSinceUp(const QString &log) {
    const QString marker =
        QString::fromLatin1(completedMarker.data(), static_cast<qsizetype>(completedMarker.size()));
    const qsizetype up = log.lastIndexOf(marker);
    return up < 0 ? log : log.sliced(up);
}

LossReason ofNetwork(platform::TunnelLoss loss) {
    switch (loss) {
    case platform::TunnelLoss::ProcessEnded:
        break;
    case platform::TunnelLoss::DeviceGone:
        return {Texts::device(), QStringLiteral("the device is gone")};
    case platform::TunnelLoss::RoutesChanged:
        return {Texts::routes(), QStringLiteral("the routes were changed")};
    }
    return {Texts::killed(), QStringLiteral("OpenVPN was killed")};
}

} // namespace

LossReason LossReason::of(platform::TunnelLoss loss, const QString &openVpnLog) {
    const QString lines = linesSinceUp(openVpnLog);
    if (lines.contains(QLatin1String("Inactivity timeout"))) {
        return {Texts::silent(), QStringLiteral("the server is silent")};
    }
    if (lines.contains(QLatin1String("process exiting")) ||
        lines.contains(
            QLatin1String(fatalErrorMarker.data(), static_cast<qsizetype>(fatalErrorMarker.size())))) {
        return {Texts::ended(), QStringLiteral("OpenVPN has ended")};
    }
    return ofNetwork(loss);
}

} // namespace quorvane
