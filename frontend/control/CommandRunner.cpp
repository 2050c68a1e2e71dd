#include "CommandRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace quorvane {

using platform::ControlLocation;
using platform::ControlOperation;
using platform::ControlOutcome;
using platform::ControlState;

namespace {

QString lineOf(const QJsonObject &object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// Names for programs: they never change and are not translated.
QString jsonOf(const ControlState &state) {
    return lineOf({{QStringLiteral("running"), true},
                   {QStringLiteral("state"), state.state},
                   {QStringLiteral("current_address"), state.currentAddress},
                   {QStringLiteral("real_address"), state.realAddress},
                   {QStringLiteral("location"), state.location},
                   {QStringLiteral("network_lock"), state.locked},
                   {QStringLiteral("asks_administrator"), state.asksAdministrator}});
}

bool startsACopy(ControlOperation operation) {
    return operation == ControlOperation::Hide || operation == ControlOperation::Show;
}

} // namespace

CommandRunner::CommandRunner(platform::ControlClient &client, Printer output, Printer errors)
    : m_client(client), m_output(std::move(output)), m_errors(std::move(errors)) {}

CommandRunner::Status CommandRunner::run(const Command &command) {
    switch (command.kind) {
    case Command::Kind::Operate:
        return operate(command);
    case Command::Kind::Status:
        return status(command);
    case Command::Kind::Locations:
        return locations(command);
    case Command::Kind::Help:
        m_output(command.text.trimmed());
        return Success;
    case Command::Kind::Wrong:
        m_errors(command.text);
        return WrongUse;
    }
    return WrongUse;
}

CommandRunner::Status CommandRunner::operate(const Command &command) {
    if (!m_client.isRunning()) {
        if (!startsACopy(command.operation)) {
            return notRunning(false);
        }
        if (!m_client.hasDisplay()) {
            m_errors(tr("Quorvane is not running, and there is no display to start it on."));
            return CannotStart;
        }
        if (!m_client.start()) {
            m_errors(tr("Quorvane could not be started."));
            return CannotStart;
        }
    }
    bool reported = false;
    const ControlOutcome outcome =
        m_client.operate(command.operation, command.location, [this, &reported](const ControlState &state) {
            if (state.asksAdministrator && !std::exchange(reported, true)) {
                m_errors(tr("Quorvane's window asks for an administrator's name and password."));
            }
        });
    switch (outcome.kind) {
    case ControlOutcome::Kind::Done:
        if (!outcome.text.isEmpty()) {
            m_output(outcome.text);
        }
        return Success;
    case ControlOutcome::Kind::Failed:
        m_errors(outcome.text);
        return Failed;
    case ControlOutcome::Kind::NotHidden:
        m_errors(outcome.text);
        return NotHidden;
    case ControlOutcome::Kind::UnknownLocation:
        m_errors(outcome.text);
        return UnknownLocation;
    case ControlOutcome::Kind::NotRunning:
        // A copy that quits may end before its answer is sent.
        return command.operation == ControlOperation::Quit ? Success : notRunning(false);
    }
    return Failed;
}

CommandRunner::Status CommandRunner::status(const Command &command) {
    if (!m_client.isRunning()) {
        return notRunning(command.json);
    }
    if (!command.follow) {
        const auto state = m_client.state();
        if (!state) {
            return notRunning(command.json);
        }
        print(*state, command.json);
        return Success;
    }
    m_client.follow([this, &command](const std::optional<ControlState> &state) {
        if (state) {
            print(*state, command.json);
        }
        return state.has_value();
    });
    // The copy has quit, which ends what was followed.
    if (command.json) {
        m_output(lineOf({{QStringLiteral("running"), false}}));
    }
    return Success;
}

CommandRunner::Status CommandRunner::locations(const Command &command) {
    const auto locations = m_client.isRunning() ? m_client.locations() : std::nullopt;
    if (!locations) {
        return notRunning(command.json);
    }
    QJsonArray entries;
    for (const ControlLocation &location : *locations) {
        if (!command.json) {
            m_output(location.title);
        }
        entries.append(QJsonObject{{QStringLiteral("title"), location.title},
                                   {QStringLiteral("country"), location.country},
                                   {QStringLiteral("full"), location.full},
                                   {QStringLiteral("selected"), location.selected}});
    }
    if (command.json) {
        m_output(QString::fromUtf8(QJsonDocument(entries).toJson(QJsonDocument::Compact)));
    }
    return Success;
}

CommandRunner::Status CommandRunner::notRunning(bool json) {
    if (json) {
        m_output(lineOf({{QStringLiteral("running"), false}}));
    } else {
        m_errors(tr("Quorvane is not running."));
    }
    return NotRunning;
}

void CommandRunner::print(const ControlState &state, bool json) {
    if (json) {
        m_output(jsonOf(state));
        return;
    }
    QString line;
    if (state.state == QStringLiteral("hidden")) {
        line = tr("Hidden behind %1 (%2). The real IP is %3.")
                   .arg(state.currentAddress, state.location, state.realAddress);
    } else if (state.state == QStringLiteral("searching")) {
        line = tr("Searching for an available IP (%1).").arg(state.location);
    } else if (state.state == QStringLiteral("starting")) {
        line = tr("Starting: the service has not answered yet.");
    } else {
        line = tr("Not hidden: %1.").arg(state.realAddress);
    }
    if (state.locked) {
        line += QLatin1Char(' ') + tr("Traffic outside the tunnel is blocked.");
    }
    m_output(line);
}

} // namespace quorvane
