#include "TestServer.h"
#include "TlsServer.h"
#include "UrlLoaderFixture.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

class CurlTlsTest : public UrlLoaderFixture {
protected:
    static void SetUpTestSuite() { m_certificates = std::make_unique<TestCertificates>(); }

    static void TearDownTestSuite() { m_certificates.reset(); }

    void SetUp() override {
        ASSERT_TRUE(m_certificates->areMade()) << "the openssl tool made no m_certificates";
        m_trusting = std::make_unique<CurlUrlLoader>(QStringLiteral("1"), m_certificates->authority(),
                                                     UrlLimits{5s, 10s, 1000});
    }

    static QByteArray answer(const QByteArray &body) {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\n\r\n" + body;
    }

    inline static std::unique_ptr<TestCertificates> m_certificates;
    std::unique_ptr<CurlUrlLoader> m_trusting;
};

TEST_F(CurlTlsTest, ExtraAuthorityIsTrusted) {
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer("secret"));
    EXPECT_EQ(download(*m_trusting, server.url()).finished, 1);
    EXPECT_EQ(saved(), "secret");
    EXPECT_EQ(fetch(*m_trusting, server.url()), "secret");
}

TEST_F(CurlTlsTest, LargeBodiesComeThroughWhole) {
    const QByteArray body = QByteArray("0123456789abcdef").repeated(500000);
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer(body));
    CurlUrlLoader patient(QStringLiteral("1"), m_certificates->authority(), {5s, 20s, body.size()});
    EXPECT_EQ(download(patient, server.url()).finished, 1);
    EXPECT_TRUE(saved() == body);
    EXPECT_TRUE(fetch(patient, server.url()) == body);
}

TEST_F(CurlTlsTest, UnknownAuthorityFails) {
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer("secret"));
    const Outcome outcome = download(m_loader, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls) << outcome.error->description.toStdString();
    EXPECT_FALSE(fetch(m_loader, server.url()));
}

TEST_F(CurlTlsTest, CertificateOfAnotherHostFails) {
    const TlsServer server(*m_certificates, QStringLiteral("wrong"), answer("secret"));
    const Outcome outcome = download(*m_trusting, server.url());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls);
}

TEST_F(CurlTlsTest, RedirectToPlainHttpIsNotFollowed) {
    const TestServer plain(TestServer::reply("200 OK", "plain"));
    const TlsServer server(*m_certificates, QStringLiteral("good"),
                           "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " +
                               plain.url() + "\r\n\r\n");
    EXPECT_TRUE(download(*m_trusting, server.url()).error);
    EXPECT_FALSE(fetch(*m_trusting, server.url()));
    EXPECT_TRUE(plain.requests().isEmpty());
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(CurlTlsTest, AnAuthorityFileWithoutCertificatesLeavesTheFolderAlone) {
    const TlsServer server(*m_certificates, QStringLiteral("good"), answer("x"));
    const QString empty = m_folder.filePath(QStringLiteral("empty.crt"));
    const QString noise = m_folder.filePath(QStringLiteral("noise.crt"));
    for (const auto &[name, content] : {std::pair(empty, ""), std::pair(noise, "no certificate")}) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    for (const QString &file :
         {QString(), QStringLiteral("/no/such/ca.crt"), empty, noise, m_folder.path()}) {
        CurlUrlLoader other(QStringLiteral("1"), file, {5s, 10s, 1000}, m_certificates->authorityFolder());
        EXPECT_EQ(fetch(other, server.url()), "x") << file.toStdString();
        CurlUrlLoader none(QStringLiteral("1"), file, {5s, 10s, 1000}, m_folder.path());
        const Outcome outcome = download(none, server.url());
        ASSERT_TRUE(outcome.error);
        EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls) << file.toStdString();
    }
}

TEST_F(CurlTlsTest, FileAndFolderOfAuthoritiesAreBothTrusted) {
    const TestCertificates others;
    ASSERT_TRUE(others.areMade());
    CurlUrlLoader both(QStringLiteral("1"), others.authority(), {5s, 10s, 1000},
                       m_certificates->authorityFolder());
    const TlsServer first(*m_certificates, QStringLiteral("good"), answer("first"));
    const TlsServer second(others, QStringLiteral("good"), answer("second"));
    EXPECT_EQ(fetch(both, first.url()), "first");
    EXPECT_EQ(fetch(both, second.url()), "second");
}

TEST_F(CurlTlsTest, BodiesThatAreCutShortFail) {
    const QByteArray head = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
    for (const TlsServer::End end : {TlsServer::End::Announced, TlsServer::End::Abrupt}) {
        const TlsServer whole(*m_certificates, QStringLiteral("good"), answer("whole"), end);
        EXPECT_EQ(fetch(*m_trusting, whole.url()), "whole");
        const TlsServer cut(*m_certificates, QStringLiteral("good"), head + "Content-Length: 5\r\n\r\nbody",
                            end);
        EXPECT_FALSE(fetch(*m_trusting, cut.url()));
        const TlsServer chunks(*m_certificates, QStringLiteral("good"),
                               head + "Transfer-Encoding: chunked\r\n\r\n4\r\nbody\r\n", end);
        EXPECT_FALSE(fetch(*m_trusting, chunks.url()));
        const TlsServer cutHead(*m_certificates, QStringLiteral("good"), head, end);
        EXPECT_FALSE(fetch(*m_trusting, cutHead.url()));
    }
    const TlsServer endless(*m_certificates, QStringLiteral("good"), head + "\r\nbody");
    EXPECT_EQ(fetch(*m_trusting, endless.url()), "body");
}

TEST_F(CurlTlsTest, APeerWithoutTlsFails) {
    TestServer plain([](int descriptor) { TestServer::send(descriptor, "HTTP/1.1 400 Bad\r\n\r\nx"); },
                     TestServer::Start::AtOnce);
    const QByteArray url = plain.url().replace("http:", "https:");
    const Outcome outcome = download(*m_trusting, url);
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::Tls) << outcome.error->description.toStdString();
    EXPECT_FALSE(fetch(*m_trusting, url));
    EXPECT_TRUE(filesLeft().isEmpty());
}

TEST_F(CurlTlsTest, APeerThatIsSilentAtTheHandshakeTimesOut) {
    TestServer mute([](int) {});
    CurlUrlLoader hasty(QStringLiteral("1"), m_certificates->authority(), shortLimits());
    const Outcome outcome = download(hasty, mute.url().replace("http:", "https:"));
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->kind, UrlError::Kind::TimedOut);
}

} // namespace

} // namespace quorvane::platform
