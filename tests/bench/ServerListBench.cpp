// server_list_bench: measures how long answers with many servers take, from the text to the filled pop-up.
// The results are only printed.
#include "fakes/TestPlatform.h"
#include "frontend/api/AnswerTable.h"
#include "frontend/api/ServerModel.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QSet>
#include <algorithm>
#include <cstdio>
#include <functional>

namespace quorvane {

namespace {

constexpr int runs = 5;
constexpr int addressesOfGroup = 4;
const QStringList countryCodes{QStringLiteral("DE"), QStringLiteral("US"), QStringLiteral("GB"),
                               QStringLiteral("FR"), QStringLiteral("NL"), QStringLiteral("SE")};

/// An answer with the given number of server lines, four addresses each, in no order.
QString answer(int servers) {
    QString text = QStringLiteral("UN: user<br />PW: password<br />");
    for (int i = 0; i < servers; ++i) {
        // A step without a common factor with the count visits every number once.
        const int number = static_cast<int>((qint64{i} * 7919) % servers);
        const QString &code = countryCodes.at(number % countryCodes.size());
        text += QStringLiteral("Server: %1,City %1,C%1,%2,Land %2|").arg(QString::number(number), code);
        QStringList addresses;
        for (int address = 0; address < addressesOfGroup; ++address) {
            addresses.append(QStringLiteral("100.%1.%2.%3")
                                 .arg(QString::number(number >> 14), QString::number((number >> 6) & 255),
                                      QString::number((number & 63) * addressesOfGroup + address)));
        }
        text += addresses.join(u',');
        text += QStringLiteral("<br />");
    }
    return text;
}

void addFlags(fakes::TestPlatform &services) {
    const QString folder = services.platform().bundle->resourcesPath() + QStringLiteral("/images/");
    QDir().mkpath(folder);
    QImage image(32, 24, QImage::Format_ARGB32);
    image.fill(Qt::red);
    for (const QString &code : QStringList{QStringLiteral("XX")} + countryCodes) {
        image.save(folder + code.toLower() + QStringLiteral(".png"));
    }
}

/// Prints the median and the extremes of some runs.
void measure(const QByteArray &name, const std::function<void()> &work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        work();
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    std::printf("%-44s %9.1f ms   (%.1f to %.1f, %d runs)\n", name.constData(), times[runs / 2],
                times.front(), times.back(), runs);
    std::fflush(stdout);
}

void measureSize(int servers) {
    const QByteArray text = answer(servers).toUtf8();
    AnswerTable table;
    const QByteArray label = QByteArray::number(servers) + " servers: ";
    measure(label + "reading the answer", [&] { table = AnswerTable::read(text).value(); });
    QrvVpnDataList groups;
    measure(label + "parsing its lines", [&] {
        groups = ServerModel::parseServers(table.servers, table.value(QStringLiteral("UN")),
                                           table.value(QStringLiteral("PW")), QString());
    });
    QrvLocationPaneController pane;
    pane.show();
    measure(label + "filling the pop-up", [&] { pane.fillCountries(groups); });
    // Measurements of incomplete work would mislead.
    const bool complete = std::all_of(groups.begin(), groups.end(), [](const QrvVpnDataPointer &group) {
        return QSet<QString>(group->ipAdressArray.begin(), group->ipAdressArray.end()).size() ==
               addressesOfGroup;
    });
    if (!complete || groups.size() != servers || pane.findChild<QComboBox *>()->count() != servers + 1) {
        std::fprintf(stderr, "not every server came through\n");
        std::exit(1);
    }
}

} // namespace

} // namespace quorvane

int main(int argc, char *argv[]) {
    using namespace quorvane;
    QApplication application(argc, argv);
    fakes::TestPlatform services;
    addFlags(services);
    for (const int servers : {2'000, 100'000}) {
        measureSize(servers);
    }
    return 0;
}
