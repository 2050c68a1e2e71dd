#include "LogVerdict.h"

#include <array>

namespace {

struct Marker {
    QLatin1String text;
    QLatin1String line;
};

constexpr std::array<Marker, 5> failureMarkers{
    {{QLatin1String("AUTH_FAILED"), QLatin1String("stopVpn by AUTH_FAILED")},
     {QLatin1String("TLS key negotiation failed"), QLatin1String("stopVpn by TLS key negotiation failed")},
     {QLatin1String("Cannot resolve host address"), QLatin1String("stopVpn by Cannot resolve host address")},
     {QLatin1String("auth-user-pass fails"), QLatin1String("auth-user-pass fails. Not found .vpnCreds.txt")},
     {QLatin1String("Exiting due to fatal error"),
      QLatin1String("*** auth-user-pass fails. Not found .vpnCreds.txt")}}};

constexpr QLatin1String completed("Initialization Sequence Completed");

/// The piece before the last, when there are at least three pieces between line feeds: since the log ends
/// in a line feed, that is its last complete line.
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
