#include "updates/UpdateChecker.h"
#include "RawHttpServer.h"
#include "support/Cases.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::RawHttpServer;
using namespace std::chrono_literals;
using Kind = UpdateCheckError::Kind;

namespace {

const QByteArray kManifest =
    R"({"latestVersion":"1.4.0","downloadURL":"https://lumetra.app/download"})";
constexpr char kPath[] = "/lumetra/appcast.json";
// Short limits so the time-out cases take about a second.
const UpdateChecker::Limits kQuick{1s, 3s};

struct Outcome {
    std::optional<UpdateCheckResult> result;
    bool onMainThread = false;
    int calls = 0;
    qint64 milliseconds = 0;
};

// Runs one fetch to its end while the event loop serves the test server.
Outcome fetch(const QUrl& url) {
    UpdateChecker checker(url, kQuick);
    Outcome outcome;
    QElapsedTimer clock;
    clock.start();
    checker.fetchLatestManifest([&](const UpdateCheckResult& result) {
        outcome.result = result;
        outcome.onMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        ++outcome.calls;
    });
    EXPECT_FALSE(outcome.result) << "the completion must not run before the fetch returns";
    (void)QTest::qWaitFor([&] { return outcome.result.has_value(); }, 20000);
    outcome.milliseconds = clock.elapsed();
    QTest::qWait(20); // any second completion would arrive by now
    return outcome;
}

RawHttpServer::Responder replying(const char* status, const QByteArray& body,
                                  const QByteArray& headers = {}) {
    return [=](QTcpSocket& socket, const QByteArray&) {
        RawHttpServer::send(socket, RawHttpServer::response(status, body, headers));
    };
}

// Sends `total` bytes of filler as the bytes drain, so the server does not hold them all.
RawHttpServer::Responder streaming(const QByteArray& head, qint64 total) {
    return [=](QTcpSocket& socket, const QByteArray&) {
        socket.write(head);
        auto left = std::make_shared<qint64>(total);
        auto more = [&socket, left] {
            if (*left <= 0 || socket.bytesToWrite() > 256 * 1024)
                return;
            const QByteArray chunk(qsizetype(std::min<qint64>(*left, 64 * 1024)), ' ');
            *left -= chunk.size();
            socket.write(chunk);
            if (*left <= 0)
                socket.disconnectFromHost();
        };
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
        more();
    };
}

struct ServedCase {
    const char* name;
    RawHttpServer::Responder respond;
    std::optional<Kind> error; // none: the manifest
};

void PrintTo(const ServedCase& c, std::ostream* os) {
    *os << c.name;
}

class UpdateCheckerServedTest : public ::testing::TestWithParam<ServedCase> {};

TEST_P(UpdateCheckerServedTest, EndsOnceOnTheMainThreadWithinTheTimeOut) {
    RawHttpServer server(GetParam().respond);
    ASSERT_TRUE(server.listening());
    const Outcome outcome = fetch(server.url(kPath));
    ASSERT_TRUE(outcome.result) << "no completion within 20 s";
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_TRUE(outcome.onMainThread);
    EXPECT_LT(outcome.milliseconds, 10000); // 3 s at most, with room for a loaded machine
    if (const auto* error = std::get_if<UpdateCheckError>(&*outcome.result)) {
        EXPECT_EQ(error->kind, GetParam().error) << error->description.toStdString();
        EXPECT_FALSE(error->description.isEmpty());
    } else {
        EXPECT_FALSE(GetParam().error);
        EXPECT_EQ(std::get<UpdateManifest>(*outcome.result),
                  (UpdateManifest{"1.4.0", QUrl("https://lumetra.app/download"), std::nullopt}));
    }
}

constexpr qint64 kTenMegabytes = 10 * 1000 * 1000;

INSTANTIATE_TEST_SUITE_P(
    Responses, UpdateCheckerServedTest,
    ::testing::Values(
        ServedCase{"ValidManifest", replying("200 OK", kManifest), std::nullopt},
        // The status is not examined: a valid body is a valid manifest.
        ServedCase{"ServerErrorWithManifest", replying("500 Internal Server Error", kManifest),
                   std::nullopt},
        ServedCase{"NotFoundPage", replying("404 Not Found", "<html>Not Found</html>"),
                   Kind::decoding},
        ServedCase{"Garbage", replying("200 OK", QByteArray("\x00\xff{\"latestVersion\"", 19)),
                   Kind::decoding},
        ServedCase{"EmptyBody", replying("200 OK", {}), Kind::decoding},
        ServedCase{"TenMegabytes",
                   streaming("HTTP/1.1 200 OK\r\nContent-Length: " +
                                 QByteArray::number(kTenMegabytes) + "\r\n\r\n",
                             kTenMegabytes),
                   Kind::tooLarge},
        // No length announced and no end: only a cap applied while reading can stop it.
        ServedCase{"EndlessUndeclaredBody",
                   streaming("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n{\"a\":\"",
                             std::numeric_limits<qint64>::max()),
                   Kind::tooLarge},
        ServedCase{"Redirect",
                   [](QTcpSocket& s, const QByteArray& path) {
                       if (path == kPath)
                           replying("301 Moved Permanently", {}, "Location: /moved\r\n")(s, path);
                       else
                           replying(path == "/moved" ? "200 OK" : "404 Not Found", kManifest)(s,
                                                                                              path);
                   },
                   std::nullopt},
        ServedCase{"NeverAnswers", [](QTcpSocket&, const QByteArray&) {}, Kind::timedOut},
        // A byte now and then: never idle for the transfer time-out, so the overall one ends it.
        ServedCase{"Trickles",
                   [](QTcpSocket& s, const QByteArray&) {
                       s.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
                       auto* drip = new QTimer(&s);
                       QObject::connect(drip, &QTimer::timeout, &s, [&s] { s.write(" "); });
                       drip->start(200);
                   },
                   Kind::timedOut},
        ServedCase{"CutShort",
                   [](QTcpSocket& s, const QByteArray&) {
                       RawHttpServer::send(s, "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" +
                                                  kManifest.left(20));
                   },
                   Kind::transfer}),
    lumetra::testing::byName);

TEST(UpdateCheckerTest, ClosedPortIsATransferFailure) {
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    const Outcome outcome = fetch(QUrl(QStringLiteral("http://127.0.0.1:%1/a.json").arg(port)));
    ASSERT_TRUE(outcome.result && std::holds_alternative<UpdateCheckError>(*outcome.result));
    EXPECT_EQ(std::get<UpdateCheckError>(*outcome.result).kind, Kind::transfer);
    EXPECT_TRUE(outcome.onMainThread);
}

TEST(UpdateCheckerTest, ConcurrentFetchesAreIndependent) {
    RawHttpServer server([](QTcpSocket& s, const QByteArray& path) {
        replying("200 OK", path == kPath ? kManifest : "nonsense")(s, path);
    });
    UpdateChecker good(server.url(kPath), kQuick);
    UpdateChecker bad(server.url("/other"), kQuick);
    int manifests = 0;
    int errors = 0;
    for (int i = 0; i < 3; ++i) {
        good.fetchLatestManifest([&](const UpdateCheckResult& r) {
            manifests += std::holds_alternative<UpdateManifest>(r);
        });
        bad.fetchLatestManifest([&](const UpdateCheckResult& r) {
            errors += std::holds_alternative<UpdateCheckError>(r);
        });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return manifests == 3 && errors == 3; }, 20000));
    EXPECT_EQ(server.requests(), 6);
}

TEST(UpdateCheckerTest, DestroyedCheckerNeverCompletes) {
    RawHttpServer server([](QTcpSocket&, const QByteArray&) {});
    bool called = false;
    {
        UpdateChecker checker(server.url(kPath), kQuick);
        checker.fetchLatestManifest([&](const UpdateCheckResult&) { called = true; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests() == 1; }, 5000));
    }
    QTest::qWait(50);
    EXPECT_FALSE(called);
}

TEST(UpdateCheckerTest, EnvironmentMayReplaceTheBuiltInAddress) {
    const char* builtIn = "https://lumetra.app/lumetra/appcast.json";
    const std::pair<const char*, const char*> cases[] = {
        {"", builtIn},
        {"http://127.0.0.1:8000/lumetra/appcast.json",
         "http://127.0.0.1:8000/lumetra/appcast.json"},
        {"file:///srv/appcast.json", "file:///srv/appcast.json"},
        {"lumetra.app/appcast.json", builtIn}}; // not an absolute URL: ignored
    for (const auto& [override, expected] : cases)
        EXPECT_EQ(resolveUpdateManifestURL(QString::fromUtf8(override)).toString().toStdString(),
                  expected);
}

} // namespace
