#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

#include <functional>

namespace lumetra::testing {

// A tiny HTTP/1.1 server on 127.0.0.1 for checker tests: reads one request head per
// connection and hands the socket to a responder that writes whatever raw bytes it likes.
class RawHttpServer {
public:
    // `path` is the request target, e.g. "/lumetra/appcast.json".
    using Responder = std::function<void(QTcpSocket& socket, const QByteArray& path)>;

    explicit RawHttpServer(Responder responder) : responder_(std::move(responder)) {
        server_.listen(QHostAddress::LocalHost);
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] { accept(); });
    }

    bool listening() const { return server_.isListening(); }
    QUrl url(const char* path) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                        .arg(server_.serverPort())
                        .arg(QString::fromLatin1(path)));
    }
    int requests() const { return requests_; }

    // A complete response that closes the connection after the body.
    static QByteArray response(const char* status, const QByteArray& body,
                               const QByteArray& extraHeaders = {}) {
        return "HTTP/1.1 " + QByteArray(status) +
               "\r\nContent-Type: application/json\r\nContent-Length: " +
               QByteArray::number(body.size()) + "\r\n" + extraHeaders +
               "Connection: close\r\n\r\n" + body;
    }

    static void send(QTcpSocket& socket, const QByteArray& bytes) {
        socket.write(bytes);
        socket.disconnectFromHost();
    }

private:
    void accept() {
        while (QTcpSocket* socket = server_.nextPendingConnection()) {
            auto* head = new QByteArray;
            QObject::connect(socket, &QObject::destroyed, [head] { delete head; });
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, head] {
                if (head->endsWith("\r\n\r\n"))
                    return; // the request was already answered; ignore anything more
                head->append(socket->readAll());
                if (!head->contains("\r\n\r\n"))
                    return;
                const QByteArray line = head->left(head->indexOf("\r\n"));
                *head = head->left(head->indexOf("\r\n\r\n") + 4);
                ++requests_;
                responder_(*socket, line.split(' ').value(1));
            });
        }
    }

    QTcpServer server_;
    Responder responder_;
    int requests_ = 0;
};

} // namespace lumetra::testing
