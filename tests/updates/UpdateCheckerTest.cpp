#include "updates/UpdateChecker.h"
#include "RawHttpServer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumetra;
using lumetra::testing::RawHttpServer;
using namespace std::chrono_literals;

namespace {

const QByteArray kManifest =
    R"({"latestVersion":"1.4.0","downloadURL":"https://lumetra.app/download"})";
const UpdateManifest kExpected{QStringLiteral("1.4.0"), QUrl("https://lumetra.app/download"),
                               std::nullopt};
constexpr char kPath[] = "/lumetra/appcast.json";

// Short limits so the time-out cases take about a second.
UpdateChecker::Limits quickLimits() {
    UpdateChecker::Limits limits;
    limits.transferTimeout = 1s;
    limits.overallTimeout = 3s;
    return limits;
}

struct Outcome {
    std::optional<UpdateCheckResult> result;
    bool onMainThread = false;
    int calls = 0;
};

// Runs one fetch to its end while the event loop serves the test server.
Outcome fetch(const QUrl& url, UpdateChecker::Limits limits = quickLimits()) {
    UpdateChecker checker(url, limits);
    Outcome outcome;
    checker.fetchLatestManifest([&](const UpdateCheckResult& result) {
        outcome.result = result;
        outcome.onMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        ++outcome.calls;
    });
    EXPECT_FALSE(outcome.result) << "the completion must not run before the fetch returns";
    (void)QTest::qWaitFor([&] { return outcome.result.has_value(); }, 20000);
    // Any second completion would arrive by now.
    QTest::qWait(20);
    return outcome;
}

UpdateCheckError::Kind errorKind(const Outcome& outcome) {
    if (!outcome.result || !std::holds_alternative<UpdateCheckError>(*outcome.result))
        return static_cast<UpdateCheckError::Kind>(-1);
    return std::get<UpdateCheckError>(*outcome.result).kind;
}

struct ServedCase {
    const char* name;
    std::function<void(QTcpSocket&, const QByteArray&)> respond;
    // A manifest, or the kind of error expected.
    std::optional<UpdateCheckError::Kind> error;
};

class UpdateCheckerServedTest : public ::testing::TestWithParam<ServedCase> {};

TEST_P(UpdateCheckerServedTest, EndsOnceOnTheMainThread) {
    RawHttpServer server(GetParam().respond);
    ASSERT_TRUE(server.listening());
    const Outcome outcome = fetch(server.url(kPath));
    ASSERT_TRUE(outcome.result) << "no completion within 20 s";
    EXPECT_EQ(outcome.calls, 1);
    EXPECT_TRUE(outcome.onMainThread);
    if (!GetParam().error) {
        ASSERT_TRUE(std::holds_alternative<UpdateManifest>(*outcome.result))
            << std::get<UpdateCheckError>(*outcome.result).description.toStdString();
        EXPECT_EQ(std::get<UpdateManifest>(*outcome.result), kExpected);
    } else {
        EXPECT_EQ(errorKind(outcome), *GetParam().error);
        if (std::holds_alternative<UpdateCheckError>(*outcome.result)) {
            EXPECT_FALSE(std::get<UpdateCheckError>(*outcome.result).description.isEmpty());
        }
    }
}

void reply(QTcpSocket& socket, const char* status, const QByteArray& body) {
    RawHttpServer::send(socket, RawHttpServer::response(status, body));
}

// Sends `total` bytes of JSON-looking filler as the bytes drain, so the server does not hold
// them all either.
void stream(QTcpSocket& socket, const QByteArray& head, qint64 total) {
    socket.write(head);
    auto left = std::make_shared<qint64>(total);
    auto more = [&socket, left] {
        if (*left <= 0 || socket.bytesToWrite() > 256 * 1024)
            return;
        const QByteArray chunk(static_cast<qsizetype>(std::min<qint64>(*left, 64 * 1024)), ' ');
        *left -= chunk.size();
        socket.write(chunk);
        if (*left <= 0)
            socket.disconnectFromHost();
    };
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, more);
    more();
}

constexpr qint64 kTenMegabytes = 10 * 1000 * 1000;

INSTANTIATE_TEST_SUITE_P(
    Responses, UpdateCheckerServedTest,
    ::testing::Values(
        ServedCase{"ValidManifest",
                   [](QTcpSocket& s, const QByteArray&) { reply(s, "200 OK", kManifest); },
                   std::nullopt},
        // The status is not examined: a valid body is a valid manifest.
        ServedCase{"ServerErrorCarryingManifest",
                   [](QTcpSocket& s, const QByteArray&) {
                       reply(s, "500 Internal Server Error", kManifest);
                   },
                   std::nullopt},
        ServedCase{"NotFoundPage",
                   [](QTcpSocket& s, const QByteArray&) {
                       reply(s, "404 Not Found", "<html><h1>Not Found</h1></html>");
                   },
                   UpdateCheckError::Kind::decoding},
        ServedCase{"Garbage",
                   [](QTcpSocket& s, const QByteArray&) {
                       reply(s, "200 OK", QByteArray("\x00\xff{\"latestVersion\"", 19));
                   },
                   UpdateCheckError::Kind::decoding},
        ServedCase{"EmptyBody", [](QTcpSocket& s, const QByteArray&) { reply(s, "200 OK", {}); },
                   UpdateCheckError::Kind::decoding},
        ServedCase{"HugeDeclaredBody",
                   [](QTcpSocket& s, const QByteArray&) {
                       stream(s,
                              "HTTP/1.1 200 OK\r\nContent-Length: " +
                                  QByteArray::number(kTenMegabytes) + "\r\n\r\n",
                              kTenMegabytes);
                   },
                   UpdateCheckError::Kind::tooLarge},
        // No length announced and no end: only a cap applied while reading can stop it.
        ServedCase{"EndlessUndeclaredBody",
                   [](QTcpSocket& s, const QByteArray&) {
                       stream(s, "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n{\"a\":\"",
                              std::numeric_limits<qint64>::max());
                   },
                   UpdateCheckError::Kind::tooLarge},
        ServedCase{"Redirect",
                   [](QTcpSocket& s, const QByteArray& path) {
                       if (path == "/lumetra/appcast.json")
                           RawHttpServer::send(
                               s, RawHttpServer::response("301 Moved Permanently", {},
                                                          "Location: /moved/appcast.json\r\n"));
                       else if (path == "/moved/appcast.json")
                           reply(s, "200 OK", kManifest);
                       else
                           reply(s, "404 Not Found", {});
                   },
                   std::nullopt},
        // Headers, then a byte now and then: never idle long enough for the transfer time-out,
        // so only the overall limit ends it.
        ServedCase{"Trickles",
                   [](QTcpSocket& s, const QByteArray&) {
                       s.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
                       auto* drip = new QTimer(&s);
                       QObject::connect(drip, &QTimer::timeout, &s, [&s] { s.write(" "); });
                       drip->start(200);
                   },
                   UpdateCheckError::Kind::timedOut},
        // The connection closes half-way through the announced body.
        ServedCase{"CutShort",
                   [](QTcpSocket& s, const QByteArray&) {
                       RawHttpServer::send(s, "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" +
                                                  kManifest.left(20));
                   },
                   UpdateCheckError::Kind::transfer}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(UpdateCheckerTest, NeverAnsweringServerFailsWithinTheTimeout) {
    RawHttpServer server([](QTcpSocket&, const QByteArray&) {});
    QElapsedTimer clock;
    clock.start();
    const Outcome outcome = fetch(server.url(kPath));
    EXPECT_EQ(errorKind(outcome), UpdateCheckError::Kind::timedOut);
    EXPECT_EQ(server.requests(), 1);
    // 1 s of silence, with room for a loaded machine; nowhere near the 20 s wait.
    EXPECT_LT(clock.elapsed(), 10000);
}

TEST(UpdateCheckerTest, ClosedPortIsATransferFailure) {
    quint16 port = 0;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    }
    const Outcome outcome =
        fetch(QUrl(QStringLiteral("http://127.0.0.1:%1/lumetra/appcast.json").arg(port)));
    ASSERT_EQ(errorKind(outcome), UpdateCheckError::Kind::transfer);
    EXPECT_TRUE(outcome.onMainThread);
    EXPECT_FALSE(std::get<UpdateCheckError>(*outcome.result).description.isEmpty());
}

TEST(UpdateCheckerTest, ConcurrentFetchesAreIndependent) {
    RawHttpServer server([](QTcpSocket& s, const QByteArray& path) {
        if (path == kPath)
            reply(s, "200 OK", kManifest);
        else
            reply(s, "200 OK", "nonsense");
    });
    UpdateChecker good(server.url(kPath), quickLimits());
    UpdateChecker bad(server.url("/other"), quickLimits());
    std::vector<UpdateCheckResult> goodResults;
    std::vector<UpdateCheckResult> badResults;
    for (int i = 0; i < 3; ++i) {
        good.fetchLatestManifest([&](const UpdateCheckResult& r) { goodResults.push_back(r); });
        bad.fetchLatestManifest([&](const UpdateCheckResult& r) { badResults.push_back(r); });
    }
    (void)QTest::qWaitFor([&] { return goodResults.size() == 3 && badResults.size() == 3; }, 20000);
    ASSERT_EQ(goodResults.size(), 3u);
    ASSERT_EQ(badResults.size(), 3u);
    for (const auto& r : goodResults)
        EXPECT_TRUE(std::holds_alternative<UpdateManifest>(r));
    for (const auto& r : badResults)
        EXPECT_TRUE(std::holds_alternative<UpdateCheckError>(r));
    EXPECT_EQ(server.requests(), 6);
}

TEST(UpdateCheckerTest, DestroyedCheckerNeverCompletes) {
    RawHttpServer server([](QTcpSocket&, const QByteArray&) {});
    bool called = false;
    {
        UpdateChecker checker(server.url(kPath), quickLimits());
        checker.fetchLatestManifest([&](const UpdateCheckResult&) { called = true; });
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests() == 1; }, 5000));
    }
    QTest::qWait(50);
    EXPECT_FALSE(called);
}

struct AddressCase {
    const char* name;
    const char* override;
    const char* expected;
};

class ManifestAddressTest : public ::testing::TestWithParam<AddressCase> {};

TEST_P(ManifestAddressTest, EnvironmentMayReplaceTheBuiltInAddress) {
    const QUrl url = resolveUpdateManifestURL(QString::fromUtf8(GetParam().override));
    EXPECT_EQ(url.toString().toStdString(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Overrides, ManifestAddressTest,
    ::testing::Values(AddressCase{"Unset", "", "https://lumetra.app/lumetra/appcast.json"},
                      AddressCase{"Local", "http://127.0.0.1:8000/lumetra/appcast.json",
                                  "http://127.0.0.1:8000/lumetra/appcast.json"},
                      AddressCase{"File", "file:///srv/appcast.json", "file:///srv/appcast.json"},
                      AddressCase{"NotAURL", "lumetra.app/appcast.json",
                                  "https://lumetra.app/lumetra/appcast.json"}),
    [](const auto& info) { return std::string(info.param.name); });

} // namespace
