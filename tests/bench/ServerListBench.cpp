// server_list_bench: measures how long answers with many servers take, from the file to the open pop-up, and
// what the longest possible one needs. The results are only printed.
#include "fakes/TestPlatform.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/session/LocationList.h"
#include "frontend/support/TextFile.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"
#include "frontend/ui/shared/Theme.h"
#include "platform/linux/process/ThreadedWork.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QSet>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace quorvane {

namespace {

constexpr int runs = 7;
constexpr int addressesOfGroup = 4;
constexpr qsizetype longestAnswer = 16 * 1024 * 1024;
const QStringList countryCodes{QStringLiteral("DE"), QStringLiteral("US"), QStringLiteral("GB"),
                               QStringLiteral("FR"), QStringLiteral("NL"), QStringLiteral("SE")};

/// An answer with the given number of server lines, four addresses each, in no order.
QByteArray answer(int servers) {
    QString text = QStringLiteral("VPNUser: user<br />VPNPass: password<br />");
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
    return text.toUtf8();
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

/// Milliseconds of processor time of all threads.
double processorTime() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void print(const QByteArray &name, std::vector<double> times, double leastProcessorTime) {
    std::sort(times.begin(), times.end());
    std::printf("%-48s %9.1f ms   (%.1f to %.1f, processor %.1f, %zu runs)\n", name.constData(),
                times[times.size() / 2], times.front(), times.back(), leastProcessorTime, times.size());
    std::fflush(stdout);
}

/// Prints the median and the extremes of some runs, and the least processor time.
void measure(const QByteArray &name, const std::function<void()> &work) {
    std::vector<double> times;
    double leastProcessorTime = 1e9;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        const double before = processorTime();
        work();
        leastProcessorTime = std::min(leastProcessorTime, processorTime() - before);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    print(name, times, leastProcessorTime);
}

void requireComplete(bool complete) {
    // Measurements of incomplete work would mislead.
    if (!complete) {
        std::fprintf(stderr, "not every server came through\n");
        std::exit(1);
    }
}

QString writeAnswer(const fakes::TestPlatform &services, const QByteArray &text) {
    const QString path = services.home() + QStringLiteral("/answer");
    QFile file(path);
    requireComplete(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    return path;
}

void measureSize(const fakes::TestPlatform &services, int servers) {
    const QString path = writeAnswer(services, answer(servers));
    const QByteArray label = QByteArray::number(servers) + " servers: ";
    AnswerTable table;
    measure(label + "reading the answer",
            [&] { table = AnswerTable::read(TextFile::readBytes(path)).value(); });
    QrvVpnDataList groups;
    measure(label + "parsing its lines", [&] {
        groups = ServerModel::parseServers(table.servers, table.value(QStringLiteral("VPNUser")),
                                           table.value(QStringLiteral("VPNPass")), QString());
    });
    LocationList list;
    LocationChooser chooser(list);
    QrvLocationPaneController pane;
    pane.setChooser(chooser);
    pane.show();
    auto *popUp = pane.findChild<QComboBox *>();
    measure(label + "filling the pop-up", [&] { pane.fillCountries(groups); });
    measure(label + "opening the pop-up", [&] {
        popUp->showPopup();
        QCoreApplication::processEvents();
        popUp->hidePopup();
    });
    measure(label + "from the file to the filled pop-up", [&] {
        groups = ReadAnswer::read(TextFile::readBytes(path)).value().servers;
        pane.fillCountries(groups);
    });
    requireComplete(groups.size() == servers && popUp->count() == servers + 1);
    requireComplete(std::all_of(groups.begin(), groups.end(), [](const QrvVpnDataPointer &group) {
        return QSet<QString>(group->ipAdressArray.begin(), group->ipAdressArray.end()).size() ==
               addressesOfGroup;
    }));
}

/// Fills the pane when an answer comes.
class FillingDelegate final : public QrvApiProtocol {
public:
    explicit FillingDelegate(QrvLocationPaneController &pane) : m_pane(pane) {}

    void qrvAnswer(QrvAPI &api) override {
        m_pane.fillCountries(api.request().servers);
        ++answers;
    }

    int answers = 0;

private:
    QrvLocationPaneController &m_pane;
};

double peakMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    requireComplete(status.open(QIODevice::ReadOnly));
    const auto match = QRegularExpression(QStringLiteral("VmHWM:\\s*(\\d+) kB"))
                           .match(QString::fromLatin1(status.readAll()));
    return match.captured(1).toDouble() / 1024;
}

/// The longest answer that is accepted, with as many lines as possible, through the API client. Also measures
/// the longest time for which the main thread handles no event.
void measureLongest() {
    const QByteArray line = "Server:,,,,|<br />";
    const double before = peakMemory();
    QrvAPI api;
    LocationList list;
    LocationChooser chooser(list);
    QrvLocationPaneController pane;
    pane.setChooser(chooser);
    pane.show();
    FillingDelegate delegate(pane);
    api.setDelegate(&delegate);
    std::vector<double> times;
    std::vector<double> holds;
    double leastProcessorTime = 1e9;
    for (int run = 0; run < runs; ++run) {
        QFile file(api.decideDestination());
        requireComplete(file.open(QIODevice::WriteOnly));
        for (qsizetype left = longestAnswer; left >= line.size(); left -= line.size()) {
            file.write(line);
        }
        file.close();
        const int answersBefore = delegate.answers;
        const double processorBefore = processorTime();
        double longest = 0;
        QElapsedTimer all;
        all.start();
        api.downloadDidFinish();
        longest = static_cast<double>(all.nsecsElapsed()) / 1e6;
        while (delegate.answers == answersBefore) {
            QElapsedTimer step;
            QThread::msleep(1);
            step.start();
            QCoreApplication::processEvents();
            longest = std::max(longest, static_cast<double>(step.nsecsElapsed()) / 1e6);
        }
        times.push_back(static_cast<double>(all.nsecsElapsed()) / 1e6);
        holds.push_back(longest);
        leastProcessorTime = std::min(leastProcessorTime, processorTime() - processorBefore);
    }
    print("16 MiB of shortest lines: to the filled pop-up", times, leastProcessorTime);
    print("16 MiB of shortest lines: main thread held", holds, 0);
    std::printf("%-48s %9.1f MiB  (before: %.1f)\n", "16 MiB of shortest lines: peak memory", peakMemory(),
                before);
    requireComplete(list.count() == ServerLines::maximumLines + 1);
}

} // namespace

} // namespace quorvane

int main(int argc, char *argv[]) {
    using namespace quorvane;
    QApplication application(argc, argv);
    Theme::apply(application);
    fakes::TestPlatform services;
    addFlags(services);
    services.platform().background =
        std::make_unique<platform::ThreadedWork>(); // long answers are read there
    measureLongest();                               // first, for its peak memory
    for (const int servers : {2'000, 100'000}) {
        measureSize(services, servers);
    }
    return 0;
}
