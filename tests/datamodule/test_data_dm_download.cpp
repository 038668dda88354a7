// The one HTTP request of the program, against small servers on the loopback interface.
#include "data_dm.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Answers a request, once its head has come in, with a fixed reply (none when empty), and keeps what it
// received. `keepOpen` leaves the connection open after the reply, as a server that stalls would.
class LoopbackServer : public QObject
{
public:
    explicit LoopbackServer(const QByteArray &reply = {}, bool keepOpen = false)
    {
        m_server.listen(QHostAddress::LocalHost);
        connect(&m_server, &QTcpServer::newConnection, this, [this, reply, keepOpen] {
            while (QTcpSocket *socket = m_server.nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, this, [this, socket, reply, keepOpen] {
                    Received += socket->readAll();
                    if (reply.isEmpty() || m_answered || !Received.contains("\r\n\r\n"))
                        return;
                    m_answered = true;
                    socket->write(reply);
                    if (!keepOpen)
                        socket->disconnectFromHost();
                });
        });
    }

    QString Url(const QString &path = "/check.php?pc_id=1&lang=ru") const
    {
        return QString("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    QByteArray Received;

private:
    bool m_answered = false;
    QTcpServer m_server;
};

QByteArray HttpReply(const QByteArray &status, const QByteArray &body)
{
    return "HTTP/1.1 " + status + "\r\nContent-Type: text/plain; charset=utf-8\r\nContent-Length: "
           + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

// The request runs an event loop, which needs an application object. The suite makes one for its own time
// when the process has none, as the start-up tests look for the program's folder only without one.
class DownloadString : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static int argc = 1;
        static char name[] = "test_app";
        static char *argv[] = {name, nullptr};
        if (!QCoreApplication::instance())
            app = new QCoreApplication(argc, argv);
    }
    static void TearDownTestSuite()
    {
        delete app;
        app = nullptr;
    }
    static QCoreApplication *app;
};

QCoreApplication *DownloadString::app = nullptr;

} // namespace

TEST_F(DownloadString, ReturnsTheBodyOfASuccessfulReplyOnlyAndFailuresGiveEmptyAfterTheirTimeOuts)
{
    LoopbackServer server(HttpReply("200 OK", "обновление"));
    EXPECT_EQ(TDataDM::DownloadString(server.Url("/a b.php?pc_id=1&lang=ру"), false), "обновление");
    // One POST of an empty form, to the path and query as given, encoded.
    const QByteArray head = server.Received;
    EXPECT_TRUE(head.startsWith("POST /a%20b.php?pc_id=1&lang=%D1%80%D1%83 HTTP/1.1\r\n")
                && head.contains("Content-Type: application/x-www-form-urlencoded\r\n") && head.contains("Content-Length: 0\r\n"))
        << head.toStdString();

    LoopbackServer failing(HttpReply("500 Internal Server Error", "update"));
    EXPECT_EQ(TDataDM::DownloadString(failing.Url(), false), "");
    LoopbackServer moved("HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 6\r\n\r\nupdate");
    EXPECT_EQ(TDataDM::DownloadString(moved.Url(), false), "");
    for (const char *malformed : {"", "not a url at all", "ftp://127.0.0.1:1/x"})
        EXPECT_EQ(TDataDM::DownloadString(malformed, false), "") << malformed;
    EXPECT_EQ(TDataDM::DownloadString("ab", true), "");

    // A closed port gives nothing at once; a reply that stops half-way gives nothing after the read time-out; a secure
    // request speaks TLS and leaves a server that never answers after the connect time-out.
    quint16 port;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    } // nobody listens there any more
    LoopbackServer halfWay("HTTP/1.1 200 OK\r\nContent-Length: 100\r\nConnection: close\r\n\r\nupd", true);
    LoopbackServer silent;
    // The first four characters give way to "https", whatever they were.
    const struct { QString url; bool secure; qint64 atLeast, below; } cases[] = {
        {QString("http://127.0.0.1:%1/check.php").arg(port), false, 0, TDataDM::ConnectTimeoutMs},
        // Coarse timers may fire up to 5% early.
        {halfWay.Url(), false, TDataDM::ReadTimeoutMs * 9 / 10, TDataDM::ReadTimeoutMs + 2000},
        {"xxxx" + silent.Url().mid(4), true, TDataDM::ConnectTimeoutMs * 9 / 10, TDataDM::ConnectTimeoutMs + 2000},
    };
    for (const auto &c : cases) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(TDataDM::DownloadString(c.url, c.secure), "") << c.url.toStdString();
        EXPECT_GE(clock.elapsed(), c.atLeast) << c.url.toStdString();
        EXPECT_LT(clock.elapsed(), c.below) << c.url.toStdString();
    }
    // A TLS handshake record, not a plain request, reached the server.
    ASSERT_FALSE(silent.Received.isEmpty());
    EXPECT_EQ(silent.Received.at(0), char(0x16));
}

TEST(DownloadStringWithoutApplication, GivesEmpty)
{
    if (QCoreApplication::instance())
        GTEST_SKIP() << "this process has an application object";
    EXPECT_EQ(TDataDM::DownloadString("http://127.0.0.1:1/", false), "");
}
