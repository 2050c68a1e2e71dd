#include "Fuzz.h"
#include "frontend/tunnel/LogVerdict.h"

using namespace quorvane;

namespace {

using Outcome = LogVerdict::Outcome;

const QString completed = QStringLiteral("Initialization Sequence Completed");

void checkVerdict(const QString &text, const LogVerdict &verdict) {
    const bool up = text.contains(completed);
    const bool final = verdict.outcome == Outcome::Up || verdict.outcome == Outcome::WithErrors;
    must(up == final, "only the completion marker means that the tunnel is up");
    must(!up || verdict.failures.isEmpty(), "a tunnel that is up has no failures");
    must(!up || (verdict.lastLine.isNull() && !verdict.stuckAtLink), "a tunnel that is up is not stuck");
    const bool anyFailure = !verdict.failures.isEmpty() || verdict.stuckAtLink;
    must((verdict.outcome == Outcome::Failed) == anyFailure, "failed means that something failed");
    must(verdict.failures.size() <= 5, "one failure for each marker at most");
    must(!verdict.lastLine.contains(u'\n'), "a line contains no line feed");
    if (!verdict.lastLine.isNull()) {
        must(text.contains(QChar(u'\n') + verdict.lastLine + QChar(u'\n')),
             "the last line is one of the log's");
    }
    must(!verdict.stuckAtLink || verdict.lastLine.contains(QStringLiteral("link remote")),
         "stuck at the link means that the last line contains it");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QString text = textOf(bytes);
    const LogVerdict verdict = LogVerdict::of(text);
    checkVerdict(text, verdict);
    must(LogVerdict::of(text + completed).outcome == Outcome::Up,
         "completion decides, whatever was logged before");
    must(LogVerdict::of(text + completed + QStringLiteral(" with errors")).outcome == Outcome::WithErrors,
         "completion with errors is a different outcome");
    if (!text.contains(completed)) {
        const LogVerdict refused = LogVerdict::of(text + QStringLiteral("\nAUTH_FAILED\n"));
        must(refused.outcome == Outcome::Failed &&
                 refused.failures.contains(QStringLiteral("stopVpn by AUTH_FAILED")),
             "a refused login is a failure wherever it appears");
        must(refused.lastLine == QStringLiteral("AUTH_FAILED"),
             "the line that was just written is the last one");
    }
    must(LogVerdict::of(QString()).outcome == Outcome::Undecided, "without a log there is no verdict");
}
