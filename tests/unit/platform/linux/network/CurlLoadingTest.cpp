#include "TestServer.h"
#include "UrlLoaderFixture.h"
#include "platform/linux/network/CurlLibrary.h"

#include <atomic>
#include <future>
#include <memory>

namespace quorvane::platform {

/// A loader whose libcurl is not loaded before release().
class CurlLoadingTest : public UrlLoaderFixture {
protected:
    /// Takes what release() is given: whether the library is there.
    [[nodiscard]] CurlUrlLoader::Library library() {
        return [this]() -> const CurlLibrary * {
            ++m_calls;
            return m_released.get() ? CurlLibrary::shared() : nullptr;
        };
    }

    void start(QObject &context, const QByteArray &url, const QString &path, Outcome &outcome) {
        outcome.accepted = m_slow->download(
            url, &context, [path] { return path; }, [&outcome] { ++outcome.finished; },
            [&outcome](const UrlError &error) { outcome.error = error; });
    }

    void release(bool isThere = true) { m_release.set_value(isThere); }

    TestServer m_server{TestServer::reply("200 OK", "ok")};
    std::atomic<int> m_calls = 0;
    std::promise<bool> m_release;
    std::shared_future<bool> m_released = m_release.get_future().share();
    std::unique_ptr<CurlUrlLoader> m_slow = std::make_unique<CurlUrlLoader>(
        QStringLiteral("1"), QString(), shortLimits(), QString(), CurlUrlLoader::AddressesOf(), library());
};

TEST_F(CurlLoadingTest, DownloadsWaitForTheLibraryWithoutHoldingTheMainThread) {
    QObject context;
    Outcome first;
    Outcome second;
    start(context, m_server.url("/1"), m_path, first);
    start(context, m_server.url("/2"), m_folder.filePath(QStringLiteral("other")), second);
    EXPECT_TRUE(first.accepted && second.accepted);
    EXPECT_FALSE(spin([&] { return first.isOver() || second.isOver(); }, 600)); // longer than the silence
    EXPECT_EQ(m_calls, 1);
    EXPECT_TRUE(m_server.requests().isEmpty());
    release();
    EXPECT_TRUE(spin([&] { return first.isOver() && second.isOver(); }));
    EXPECT_EQ(first.finished, 1);
    EXPECT_EQ(second.finished, 1);
    EXPECT_EQ(m_server.requests().size(), 2);
}

TEST_F(CurlLoadingTest, ContextThatGoesMeanwhileTakesTheDownloadAlong) {
    Outcome outcome;
    auto context = std::make_unique<QObject>();
    start(*context, m_server.url(), m_path, outcome);
    context.reset();
    QObject later;
    Outcome next;
    start(later, m_server.url("/next"), m_path, next);
    release();
    EXPECT_TRUE(spin([&] { return next.isOver(); }));
    EXPECT_FALSE(outcome.isOver());
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(CurlLoadingTest, LoaderThatGoesMeanwhileEndsDownloadsSilently) {
    QObject context;
    Outcome outcome;
    start(context, m_server.url(), m_path, outcome);
    release();
    m_slow.reset();
    EXPECT_FALSE(spin([&] { return outcome.isOver(); }, 300));
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(CurlLoadingTest, LibraryThatIsMissingIsReported) {
    QObject context;
    Outcome outcome;
    start(context, m_server.url(), m_path, outcome);
    release(false);
    EXPECT_TRUE(spin([&] { return outcome.isOver(); }));
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->description, QStringLiteral("libcurl cannot be loaded"));
}

} // namespace quorvane::platform
