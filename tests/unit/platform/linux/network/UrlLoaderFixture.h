#pragma once

#include "platform/linux/network/CurlUrlLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <thread>

namespace quorvane::platform {

using namespace std::chrono_literals;

inline UrlLimits shortLimits() {
    return {400ms, 1200ms, qint64{16} * 1024 * 1024};
}

/// What came of one download.
struct Outcome {
    bool accepted = false;
    int finished = 0;
    std::optional<UrlError> error;

    [[nodiscard]] bool isOver() const { return finished > 0 || error; }
};

class UrlLoaderFixture : public ::testing::Test {
protected:
    /// Runs the event loop until the condition holds.
    template <typename Condition>
    static bool spin(Condition condition, int milliseconds = 20000) {
        QElapsedTimer clock;
        clock.start();
        while (!condition() && clock.elapsed() < milliseconds) {
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
        }
        return condition();
    }

    Outcome download(CurlUrlLoader &by, const QByteArray &url) {
        Outcome outcome;
        QObject context;
        outcome.accepted = by.download(
            url, &context,
            [this] {
                ++m_destinationsAsked;
                return m_path;
            },
            [&] { ++outcome.finished; }, [&](const UrlError &error) { outcome.error = error; });
        EXPECT_FALSE(outcome.isOver()) << "reported from within the request";
        EXPECT_TRUE(!outcome.accepted || spin([&] { return outcome.isOver(); }));
        return outcome;
    }

    [[nodiscard]] QByteArray saved() const {
        QFile file(m_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

    /// Nothing but the destination may be in its m_folder.
    [[nodiscard]] QStringList filesLeft() const {
        return QDir(QFileInfo(m_path).path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    /// fetch() on a thread of its own, as the client does.
    static std::optional<QByteArray> fetch(CurlUrlLoader &by, const QByteArray &url) {
        std::optional<QByteArray> result;
        std::thread([&] { result = by.fetch(url); }).join();
        return result;
    }

    QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath(QStringLiteral("answer"));
    int m_destinationsAsked = 0;
    CurlUrlLoader m_loader{QStringLiteral("1.0.0"), QString(), shortLimits()};
};

} // namespace quorvane::platform
