#include "SudoScriptingService.h"

#include "AccountLookup.h"
#include "platform/UserAccount.h"
#include "platform/linux/process/ChildProcess.h"
#include "platform/linux/process/SecretMemory.h"

#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <unistd.h>

namespace quorvane::platform {

namespace {

/// Any failure that is neither a refusal nor a failure of the line itself.
constexpr int notRun = 1;
/// No password is that long; a longer one would not fit in the pipe at once.
constexpr qsizetype maximumPasswordSize = 4096;
/// Bytes of a question that the user sees.
constexpr qsizetype longestQuestion = 200;

// Runs in the root shell; arguments: line, search path, marker, the user who calls. The marker means that the
// rights were granted. The rest of the input is not read, because it may contain a password for which there
// was no prompt.
constexpr char rootScript[] = "printf '%s\\n' \"$3\" >&2\n"
                              "PATH=$2 LC_ALL=C QUORVANE_CALLER=$4\n"
                              "export PATH LC_ALL QUORVANE_CALLER\n"
                              "exec /bin/sh -c -- \"$1\" </dev/null\n";
// Runs as the other administrator; arguments: those of the root script, then the variable with the prompt,
// sudo, root script.
constexpr char otherScript[] = "export \"$5\"\n"
                               "exec \"$6\" -k -S -- /bin/sh -c \"$7\" sh \"$1\" \"$2\" \"$3\" \"$4\"\n";
// The prompt of su for the password of an account, with LC_ALL=C.
constexpr char suPrompt[] = "Password: ";

/// Gives the password to the prompts for it, each once and in their order, and to no other question: a second
/// factor, an expired password and a wrong one end the input.
class PromptAnswerer {
public:
    PromptAnswerer(const SecretMemory &password, QByteArrayList prompts, QByteArray granted)
        : m_password(password), m_prompts(std::move(prompts)), m_granted(std::move(granted)) {}

    void look(ChildInput &input, const QByteArray &error, Silence silence) {
        if (m_hasEnded) {
            return;
        }
        if (error.contains(m_granted)) {
            end(input);
            return;
        }
        const qsizetype lineStart = std::max(error.lastIndexOf('\n') + 1, m_answered);
        const QByteArray line = error.mid(lineStart);
        if (m_next < m_prompts.size() && line == m_prompts[m_next]) {
            ++m_next;
            m_answered = error.size();
            input.send(m_password.line());
        } else if (m_next == m_prompts.size() && line == m_prompts.constLast()) {
            end(input); // the password was wrong, and costs one attempt
        } else if (silence != Silence::None && !line.trimmed().isEmpty()) {
            // An unfinished line of another kind: a question that waits for its answer.
            m_question = line.trimmed();
            end(input);
        } else if (silence == Silence::Long) {
            m_question = error.mid(m_answered).trimmed().split('\n').last().trimmed();
            end(input);
        }
    }

    /// What was asked beside the password; empty for nothing.
    [[nodiscard]] const QByteArray &question() const { return m_question; }

private:
    void end(ChildInput &input) {
        m_hasEnded = true;
        input.close();
    }

    const SecretMemory &m_password;
    QByteArrayList m_prompts;
    QByteArray m_granted;
    QByteArray m_question;
    qsizetype m_next = 0;
    qsizetype m_answered = 0;
    bool m_hasEnded = false;
};

QByteArrayList environment(const QByteArray &path) {
    const UserAccount account = UserAccount::current();
    return {"PATH=" + path, "LC_ALL=C", "HOME=" + QFile::encodeName(account.home),
            "USER=" + account.login.toUtf8(), "LOGNAME=" + account.login.toUtf8()};
}

ScriptResult failure(int number, const QString &message) {
    return {false, QString(), number, message};
}

QString withoutLastLineFeed(const QByteArray &bytes) {
    const QString text = QString::fromUtf8(bytes.endsWith('\n') ? bytes.chopped(1) : bytes);
    return text.isNull() ? QStringLiteral("") : text;
}

/// The result of a line that was run.
ScriptResult lineResult(int status, const QByteArray &output, const QByteArray &error) {
    if (status == 0) {
        return {true, withoutLastLineFeed(output), {}, {}};
    }
    const QString message = withoutLastLineFeed(error);
    return failure(status, message.trimmed().isEmpty()
                               ? QStringLiteral("The command ended with status %1.").arg(status)
                               : message);
}

/// The first line that contains one of the phrases; null when there is none.
template <std::size_t Count>
QString lineWith(const std::array<const char *, Count> &phrases, const QByteArray &text) {
    for (const QByteArray &line : text.split('\n')) {
        const bool holds = std::any_of(phrases.begin(), phrases.end(),
                                       [&line](const char *phrase) { return line.contains(phrase); });
        if (holds) {
            return QString::fromUtf8(line.trimmed());
        }
    }
    return {};
}

/// The messages of sudo and su when the rights were not granted.
ScriptResult refusal(const ChildOutcome &outcome, const QByteArray &prompt) {
    // A wrong password is checked first: its text continues with "no password was provided" for the second
    // attempt that sudo offers.
    static constexpr std::array wrongPassword{"Sorry, try again", "incorrect password attempt",
                                              "Authentication failure", "incorrect password"};
    static constexpr std::array refused{"is not in the sudoers file",
                                        "is not allowed to",
                                        "may not run sudo",
                                        "password is required",
                                        "no password was provided",
                                        "does not exist",
                                        "unknown user",
                                        "is currently not available",
                                        "ermission denied",
                                        "account validation failure",
                                        "has expired",
                                        "is not a valid login"};
    QByteArray said = outcome.error + '\n' + outcome.output;
    said.replace(prompt, "");
    const QString wrong = lineWith(wrongPassword, said);
    if (!wrong.isNull()) {
        return failure(notRun, wrong);
    }
    const QString no = lineWith(refused, said);
    if (!no.isNull()) {
        return failure(ScriptingService::refused, no);
    }
    return lineResult(outcome.status == 0 ? notRun : outcome.status, outcome.output, said.trimmed());
}

/// The result when something else than the password was asked.
ScriptResult asked(const QByteArray &question) {
    const QString words = QString::fromUtf8(question.left(longestQuestion)).simplified();
    ScriptResult result =
        failure(notRun, QStringLiteral("Another question than the password was asked: ") + words);
    result.otherQuestion = words;
    return result;
}

/// The command that becomes root with the account's own password. The program is empty when a tool is
/// missing.
struct RootCommand {
    ChildCommand command;
    /// The prompts for the password, in the order in which they come.
    QByteArrayList prompts;
};

/// The arguments of the root script in each of its forms: line, search path, marker, the user who calls.
using RootArguments = QByteArrayList;

RootCommand rootCommandFor(const Account &account, const RootArguments &arguments, const QByteArray &prompt) {
    const QByteArray sudo = systemProgram("sudo");
    const QByteArray su = systemProgram("su");
    const bool isRoot = ::geteuid() == 0;
    const QByteArrayList rootShell = QByteArrayList{"-c", rootScript};
    const QByteArrayList sudoArguments =
        QByteArrayList{sudo, "-k", "-S", "--", "/bin/sh"} + rootShell + QByteArrayList{"sh"} + arguments;
    const QByteArrayList suArguments = QByteArrayList{su, "-s", "/bin/sh"} + rootShell +
                                       QByteArrayList{"--", account.login, "sh"} + arguments;
    RootCommand root{{}, {prompt}};
    root.command.environment = environment(systemPath);
    // Not sudo's option for the prompt: with it every question of PAM would have these words, and the
    // password would be the answer to a second factor.
    const QByteArray sudoPrompt = "SUDO_PROMPT=" + prompt;
    if (account.id == 0) {
        root.prompts = {suPrompt};
        // Root is not prompted for a password, so an account without any rights runs su.
        const QByteArray setpriv = systemProgram("setpriv");
        root.command.program = isRoot ? setpriv : su;
        root.command.arguments =
            isRoot ? QByteArrayList{setpriv, "--reuid=nobody", "--regid=nogroup", "--clear-groups", "--"} +
                         suArguments
                   : suArguments;
        return su.isEmpty() ? RootCommand() : root;
    }
    if (sudo.isEmpty()) {
        return {};
    }
    if (isRoot) {
        const QByteArray runuser = systemProgram("runuser");
        root.command.environment.append(sudoPrompt);
        root.command.program = runuser;
        root.command.arguments = QByteArrayList{runuser, "--user=" + account.login, "--"} + sudoArguments;
    } else if (account.id == ::geteuid()) {
        root.command.environment.append(sudoPrompt);
        root.command.program = sudo;
        root.command.arguments = sudoArguments;
    } else {
        root.prompts.prepend(suPrompt);
        root.command.program = su;
        root.command.arguments =
            QByteArrayList{su, "-s", "/bin/sh", "-c", otherScript, "--", account.login, "sh"} + arguments +
            QByteArrayList{sudoPrompt, sudo, rootScript};
    }
    return root;
}

QByteArray nonce() {
    return QByteArray::number(QRandomGenerator::system()->generate64(), 16).rightJustified(16, '0');
}

} // namespace

SudoScriptingService::SudoScriptingService(const QString &resourcesFolder, int longSilence)
    : m_resources(QFile::encodeName(resourcesFolder)), m_longSilence(longSilence) {}

ScriptResult SudoScriptingService::runAsUser(const QString &line) {
    const QByteArray bytes = line.toUtf8();
    if (bytes.contains('\0')) {
        return failure(notRun, QStringLiteral("The command holds a NUL character."));
    }
    const ChildOutcome outcome =
        runChild({"/bin/sh", {"sh", "-c", "--", bytes}, environment(m_resources + ':' + systemPath), "/"});
    if (outcome.startFailure != 0) {
        return failure(notRun, qt_error_string(outcome.startFailure));
    }
    ScriptResult result = lineResult(outcome.status, outcome.output, outcome.error);
    result.openOutput = outcome.openOutput;
    return result;
}

ScriptResult SudoScriptingService::runAsAdministrator(const QString &line, const QString &user,
                                                      const QString &password) {
    if (user.isNull() || password.isNull()) {
        return failure(refused, QStringLiteral("No administrator's name and password were given."));
    }
    const auto account = findAccount(user.toUtf8());
    if (!account) {
        return failure(refused, QStringLiteral("There is no account of that name."));
    }
    const QByteArray bytes = line.toUtf8();
    if (bytes.contains('\0')) {
        return failure(notRun, QStringLiteral("The command holds a NUL character."));
    }
    const SecretMemory secret(password);
    const bool isOneLine = secret.line().count('\n') == 1 && !secret.line().contains('\0');
    if (!isOneLine || secret.line().size() > maximumPasswordSize) {
        return failure(notRun, QStringLiteral("Sorry, try again."));
    }

    const QByteArray marker = "@@granted-" + nonce() + "@@";
    const QByteArray prompt = "@@password-" + nonce() + "@@";
    RootCommand root = rootCommandFor(
        *account, {bytes, m_resources + ':' + systemPath, marker, QByteArray::number(::getuid())}, prompt);
    if (root.command.program.isEmpty()) {
        return failure(notRun, QStringLiteral("sudo, su or a tool beside them is not installed."));
    }
    root.command.longSilence = m_longSilence;
    PromptAnswerer answerer(secret, root.prompts, marker);
    const ChildOutcome outcome =
        runChild(root.command, [&answerer](ChildInput &input, const QByteArray &error, Silence silence) {
            answerer.look(input, error, silence);
        });
    if (outcome.startFailure != 0) {
        return failure(notRun, qt_error_string(outcome.startFailure));
    }
    const qsizetype granted = outcome.error.indexOf(QByteArray(marker + '\n'));
    if (granted < 0) {
        return answerer.question().isEmpty() ? refusal(outcome, prompt) : asked(answerer.question());
    }
    ScriptResult result =
        lineResult(outcome.status, outcome.output, outcome.error.mid(granted + marker.size() + 1));
    result.openOutput = outcome.openOutput;
    return result;
}

} // namespace quorvane::platform
