#include "updates/UpdateChecker.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

using namespace lumetra;
using namespace std::chrono_literals;
using Kind = UpdateCheckError::Kind;

namespace {

const QByteArray kManifest =
    R"({"latestVersion":"1.4.0","downloadURL":"https://lumetra.app/download"})";
constexpr qint64 kForever = std::numeric_limits<qint64>::max();

QByteArray reply(const char* status, const QByteArray& body, const char* headers = "") {
    return "HTTP/1.1 " + QByteArray(status) +
           "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + headers + "\r\n" +
           body;
}

struct Served {
    const char* name;
    std::optional<Kind> error; // none: the manifest
    QByteArray response;       // none: nothing listens on the port
    qint64 filler = 0;         // then this many spaces, as fast as the socket drains
    bool trickle = false;      // ... or one every 200 ms
    bool close = true;         // then the connection is closed
};

// Serves the case on 127.0.0.1: once a request line arrives, the case's bytes (a redirect's
// target gets the manifest), then the filler.
void serve(QTcpServer& server, const Served& c) {
    server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server, &c] {
        while (QTcpSocket* socket = server.nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, &c] {
                if (!socket->canReadLine() || socket->property("answered").toBool())
                    return;
                socket->setProperty("answered", true);
                const bool moved = socket->readLine().split(' ').value(1) == "/moved";
                socket->write(moved ? reply("200 OK", kManifest) : c.response);
                auto left = std::make_shared<qint64>(moved ? 0 : c.filler);
                auto* pump = new QTimer(socket);
                QObject::connect(pump, &QTimer::timeout, socket, [socket, left, &c, moved] {
                    if (socket->bytesToWrite() < 256 * 1024)
                        *left -= socket->write(
                            QByteArray(std::min<qint64>(*left, c.trickle ? 1 : 65536), ' '));
                    if (*left == 0 && (moved || c.close))
                        socket->disconnectFromHost();
                });
                pump->start(c.trickle ? 200 : 1);
            });
        }
    });
}

// Against a real server on 127.0.0.1, with time-outs of 1 s idle and 3 s overall: each fetch
// completes exactly once, later, on the calling thread, within the time-out, with the manifest
// or the kind of error.
TEST(UpdateCheckerTest, EndsOnceWithTheManifestOrTheErrorWithinTheTimeOut) {
    for (const Served& c : std::initializer_list<Served>{
             {"valid manifest", {}, reply("200 OK", kManifest)},
             // The status is not examined: a valid body is a valid manifest.
             {"500 with a manifest", {}, reply("500 Internal Server Error", kManifest)},
             {"404 page", Kind::decoding, reply("404 Not Found", "<html>Not Found</html>")},
             {"garbage", Kind::decoding,
              reply("200 OK", QByteArray("\x00\xff{\"latestVersion\"", 19))},
             {"empty body", Kind::decoding, reply("200 OK", "")},
             {"10 MB", Kind::tooLarge, "HTTP/1.1 200 OK\r\nContent-Length: 10000000\r\n\r\n",
              10'000'000},
             // No length announced and no end: only a cap applied while reading can stop it.
             {"endless body", Kind::tooLarge, "HTTP/1.1 200 OK\r\n\r\n{\"a\":\"", kForever},
             {"redirect", {}, reply("301 Moved Permanently", "", "Location: /moved\r\n")},
             {"never answers", Kind::timedOut, "", 0, false, false},
             // Never idle for the transfer time-out, so the overall one ends it.
             {"trickles", Kind::timedOut, "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n",
              kForever, true},
             {"cut short", Kind::transfer,
              "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{\"latestVersion\""},
             {"closed port", Kind::transfer, QByteArray()}}) {
        SCOPED_TRACE(c.name);
        QTcpServer server;
        serve(server, c);
        const QUrl url(QStringLiteral("http://127.0.0.1:%1%2")
                           .arg(server.serverPort())
                           .arg("/lumetra/appcast.json"));
        if (c.response.isNull())
            server.close();
        UpdateChecker checker(url, {1s, 3s});
        std::vector<UpdateCheckResult> results;
        checker.fetchLatestManifest([&](const UpdateCheckResult& r) {
            results.push_back(r);
            EXPECT_EQ(QThread::currentThread(), qApp->thread());
        });
        EXPECT_TRUE(results.empty()) << "the completion must not run before the fetch returns";
        // 3 s at most, with room for a loaded machine.
        ASSERT_TRUE(QTest::qWaitFor([&] { return !results.empty(); }, 10000));
        QTest::qWait(20); // any second completion would arrive by now
        ASSERT_EQ(results.size(), 1u);
        if (const auto* error = std::get_if<UpdateCheckError>(&results[0]))
            EXPECT_TRUE(error->kind == c.error && !error->description.isEmpty())
                << error->description.toStdString();
        else
            EXPECT_TRUE(!c.error && std::get<UpdateManifest>(results[0]).latestVersion == "1.4.0");
    }
}

TEST(UpdateCheckerTest, EnvironmentMayReplaceTheBuiltInAddress) {
    const QString builtIn = "https://lumetra.app/lumetra/appcast.json";
    EXPECT_EQ(resolveUpdateManifestURL("").toString(), builtIn);
    EXPECT_EQ(resolveUpdateManifestURL("lumetra.app/a.json").toString(), builtIn); // not absolute
    EXPECT_EQ(resolveUpdateManifestURL("http://127.0.0.1:8/a").toString(), "http://127.0.0.1:8/a");
}

} // namespace
