// session_simulation [--events N] [--seconds S] [--seed SEED] [--replay "STEPS"]
//
// Random walks through a session, checked after every step. A walk that breaks a rule is shortened and
// printed, with the command that replays it; the exit status is then 1. Without --seed every run draws a new
// one.
#include "Steps.h"
#include "World.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdio>

using namespace quorvane::simulation;

namespace {

constexpr int stepsOfAWalk = 250;

struct Failure {
    qsizetype step;
    QString rule;
};

/// Runs the steps in a world of their own, up to the first that breaks a rule.
std::optional<Failure> failureOf(const Steps &steps) {
    World world;
    for (qsizetype i = 0; i < steps.size(); ++i) {
        if (const QString rule = world.run(steps.at(i)); !rule.isNull()) {
            return Failure{i, rule};
        }
    }
    return std::nullopt;
}

/// Leaves out all steps that are not needed to break the same rule.
Steps shortened(Steps steps, const QString &rule) {
    for (qsizetype part = steps.size() / 2; part > 0; part /= 2) {
        for (qsizetype first = 0; first + part <= steps.size();) {
            Steps fewer = steps;
            fewer.remove(first, part);
            const auto failure = failureOf(fewer);
            if (failure && failure->rule == rule) {
                steps = fewer.first(failure->step + 1);
            } else {
                first += part;
            }
        }
    }
    return steps;
}

void print(const QString &line) {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

int replayed(const QString &text) {
    const auto steps = read(text);
    if (!steps) {
        print(QStringLiteral("these are no steps: ") + text);
        return 2;
    }
    World world;
    for (const Step &step : *steps) {
        const QString rule = world.run(step);
        print(QStringLiteral("%1: %2").arg(written({step}), -18).arg(world.described()));
        if (!rule.isNull()) {
            print(QStringLiteral("BROKEN: ") + rule);
            return 1;
        }
    }
    print(QStringLiteral("no rule is broken"));
    return 0;
}

int explored(quint64 seed, qint64 events, qint64 seconds) {
    std::mt19937_64 random(seed);
    QElapsedTimer clock;
    clock.start();
    qint64 done = 0;
    while (done < events && clock.elapsed() < seconds * 1000) {
        const Steps steps = drawn(random, stepsOfAWalk);
        if (const auto failure = failureOf(steps)) {
            const Steps few = shortened(steps.first(failure->step + 1), failure->rule);
            print(QStringLiteral("BROKEN, seed %1, after %2 events: %3")
                      .arg(seed)
                      .arg(done + failure->step)
                      .arg(failure->rule));
            print(QStringLiteral("session_simulation --replay \"%1\"").arg(written(few)));
            return 1;
        }
        done += steps.size();
    }
    print(QStringLiteral("%1 events in %2 s, seed %3: no rule is broken")
              .arg(done)
              .arg(static_cast<double>(clock.elapsed()) / 1000.0, 0, 'f', 1)
              .arg(seed));
    return 0;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Random walks through a session."));
    options.addHelpOption();
    options.addOptions(
        {{QStringLiteral("events"), QStringLiteral("At most this many."), QStringLiteral("N"),
          QStringLiteral("2000000")},
         {QStringLiteral("seconds"), QStringLiteral("At most this long."), QStringLiteral("S"),
          QStringLiteral("60")},
         {QStringLiteral("seed"), QStringLiteral("Repeat that run."), QStringLiteral("SEED")},
         {QStringLiteral("replay"), QStringLiteral("Run these steps."), QStringLiteral("STEPS")}});
    options.process(application);
    if (options.isSet(QStringLiteral("replay"))) {
        return replayed(options.value(QStringLiteral("replay")));
    }
    const quint64 seed = options.isSet(QStringLiteral("seed"))
                             ? options.value(QStringLiteral("seed")).toULongLong()
                             : std::random_device()();
    return explored(seed, options.value(QStringLiteral("events")).toLongLong(),
                    options.value(QStringLiteral("seconds")).toLongLong());
}
