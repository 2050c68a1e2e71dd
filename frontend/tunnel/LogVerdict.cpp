#include "LogVerdict.h"

#include "common/OpenVpnMarkers.h"

#include <array>
#include <string_view>

namespace quorvane {

namespace {

struct Marker {
    QLatin1String text;
    QLatin1String line;
};

constexpr QLatin1String latin1(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

constexpr std::array<Marker, 5> failureMarkers{
    {{latin1(quorvane::authFailedMarker), QLatin1String("stopVpn by AUTH_FAILED")},
     {latin1(quorvane::keyNegotiationFailedMarker), QLatin1String("stopVpn by TLS key negotiation failed")},
     {latin1(quorvane::hostNotResolvedMarker), QLatin1String("stopVpn by Cannot resolve host address")},
     {latin1(quorvane::credentialsFileMarker),
      QLatin1String("auth-user-pass fails. Not found .vpnCreds.txt")},
     {latin1(quorvane::fatalErrorMarker),
      QLatin1String("*** auth-user-pass fails. Not found .vpnCreds.txt")}}};

constexpr QLatin1String completed = latin1(quorvane::completedMarker);

/// The second to last of the pieces between line feeds, if there are at least three: since the log ends in a
/// line feed, that is its last complete line.
QString secondToLastLine(const QString &text) {
    const qsizetype end = text.lastIndexOf(u'\n');
    if (end <= 0) {
        return {};
    }
    const qsizetype before = text.lastIndexOf(u'\n', end - 1);
    if (before < 0) {
        return {};
    }
    const QString line = text.sliced(before + 1, end - before - 1);
    return line.isEmpty() ? QStringLiteral("") : line;
}

} // namespace

LogVerdict LogVerdict::of(const QString &text) {
    LogVerdict verdict;
    if (const qsizetype at = text.lastIndexOf(completed); at >= 0) {
        const bool withErrors = text.indexOf(QLatin1String("with errors"), at + completed.size()) >= 0;
        verdict.outcome = withErrors ? Outcome::WithErrors : Outcome::Up;
        return verdict;
    }
    for (const Marker &marker : failureMarkers) {
        if (text.contains(marker.text)) {
            verdict.failures.append(marker.line);
        }
    }
    verdict.lastLine = secondToLastLine(text);
    verdict.stuckAtLink = verdict.lastLine.contains(QLatin1String("link remote"));
    if (!verdict.failures.isEmpty() || verdict.stuckAtLink) {
        verdict.outcome = Outcome::Failed;
    }
    return verdict;
}

} // namespace quorvane
