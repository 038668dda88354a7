// The one HTTP request of the program, against small servers on the loopback interface.
#include "data_dm.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <memory>

namespace {

// Answers every request with a fixed reply once the request's head has come in, and keeps what it received.
class LoopbackServer : public QObject
{
public:
    enum Mode { Answer, Silent, HangUp };

    LoopbackServer(Mode mode, QByteArray reply = QByteArray()) : m_mode(mode), m_reply(std::move(reply))
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                    Received += socket->readAll();
                    if (m_mode == HangUp)
                        socket->abort();
                    if (m_mode == Answer && Received.contains("\r\n\r\n") && !m_answered) {
                        m_answered = true;
                        socket->write(m_reply);
                        if (!KeepOpen)
                            socket->disconnectFromHost();
                    }
                });
            }
        });
    }

    QString Url(const QString &path = "/check.php?pc_id=1&lang=ru") const
    {
        return QString("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    QByteArray Received;
    // Leaves the connection open after the reply, as a server that stalls would.
    bool KeepOpen = false;

private:
    bool m_answered = false;
    QTcpServer m_server;
    Mode m_mode;
    QByteArray m_reply;
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

TEST_F(DownloadString, ReturnsTheBodyOfTheReply)
{
    LoopbackServer server(LoopbackServer::Answer, HttpReply("200 OK", "update"));
    EXPECT_EQ(TDataDM::DownloadString(server.Url(), false), "update");

    // One POST of an empty form under the form content type, to the path and query as given.
    const QByteArray head = server.Received;
    EXPECT_TRUE(head.startsWith("POST /check.php?pc_id=1&lang=ru HTTP/1.1\r\n")) << head.toStdString();
    EXPECT_TRUE(head.contains("Content-Type: application/x-www-form-urlencoded\r\n")) << head.toStdString();
    EXPECT_TRUE(head.contains("Content-Length: 0\r\n")) << head.toStdString();
    EXPECT_TRUE(head.endsWith("\r\n\r\n"));
}

TEST_F(DownloadString, ReadsTheBodyAsUtf8)
{
    LoopbackServer server(LoopbackServer::Answer, HttpReply("200 OK", "обновление"));
    EXPECT_EQ(TDataDM::DownloadString(server.Url(), false), "обновление");
}

TEST_F(DownloadString, EncodesTheUrlBeforeSending)
{
    LoopbackServer server(LoopbackServer::Answer, HttpReply("200 OK", "ok"));
    EXPECT_EQ(TDataDM::DownloadString(server.Url("/a b.php?lang=ру"), false), "ok");
    EXPECT_TRUE(server.Received.startsWith("POST /a%20b.php?lang=%D1%80%D1%83 HTTP/1.1\r\n"))
        << server.Received.toStdString();
}

TEST_F(DownloadString, ErrorStatusGivesEmpty)
{
    LoopbackServer server(LoopbackServer::Answer, HttpReply("500 Internal Server Error", "update"));
    EXPECT_EQ(TDataDM::DownloadString(server.Url(), false), "");
    LoopbackServer moved(LoopbackServer::Answer,
                         "HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 6\r\nConnection: close\r\n\r\nupdate");
    EXPECT_EQ(TDataDM::DownloadString(moved.Url(), false), "");
}

TEST_F(DownloadString, ClosedPortGivesEmptyAtOnce)
{
    quint16 port;
    {
        QTcpServer probe;
        ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
        port = probe.serverPort();
    } // nobody listens there any more
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(TDataDM::DownloadString(QString("http://127.0.0.1:%1/check.php").arg(port), false), "");
    EXPECT_LT(clock.elapsed(), TDataDM::ConnectTimeoutMs);
}

TEST_F(DownloadString, ReplyThatStopsHalfWayGivesEmptyAfterTheReadTimeOut)
{
    LoopbackServer server(LoopbackServer::Answer,
                          "HTTP/1.1 200 OK\r\nContent-Length: 100\r\nConnection: close\r\n\r\nupd");
    server.KeepOpen = true;
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(TDataDM::DownloadString(server.Url(), false), "");
    const qint64 elapsed = clock.elapsed();
    EXPECT_GE(elapsed, TDataDM::ReadTimeoutMs * 9 / 10); // coarse timers may fire up to 5% early
    EXPECT_LT(elapsed, TDataDM::ReadTimeoutMs + 2000);
}

TEST_F(DownloadString, TlsServerThatNeverAnswersIsLeftAfterTheConnectTimeOut)
{
    LoopbackServer server(LoopbackServer::Silent);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(TDataDM::DownloadString(server.Url(), true), "");
    const qint64 elapsed = clock.elapsed();
    EXPECT_GE(elapsed, TDataDM::ConnectTimeoutMs * 9 / 10);
    EXPECT_LT(elapsed, TDataDM::ConnectTimeoutMs + 2000);
    EXPECT_FALSE(server.Received.isEmpty());
}

TEST_F(DownloadString, SecureReplacesTheSchemeAndSpeaksTls)
{
    LoopbackServer server(LoopbackServer::HangUp);
    // The first four characters give way to "https", whatever they were.
    const QString url = "xxxx" + server.Url().mid(4);
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(TDataDM::DownloadString(url, true), "");
    // A TLS handshake record, not a plain request, reached the server.
    ASSERT_FALSE(server.Received.isEmpty());
    EXPECT_EQ(server.Received.at(0), char(0x16));
    EXPECT_LT(clock.elapsed(), TDataDM::ConnectTimeoutMs);
}

TEST_F(DownloadString, MalformedUrlGivesEmptyWithoutRaising)
{
    EXPECT_EQ(TDataDM::DownloadString("", false), "");
    EXPECT_EQ(TDataDM::DownloadString("not a url at all", false), "");
    EXPECT_EQ(TDataDM::DownloadString("ftp://127.0.0.1:1/x", false), "");
    EXPECT_EQ(TDataDM::DownloadString("ab", true), "");
}

TEST(DownloadStringWithoutApplication, GivesEmpty)
{
    if (QCoreApplication::instance())
        GTEST_SKIP() << "this process has an application object";
    EXPECT_EQ(TDataDM::DownloadString("http://127.0.0.1:1/", false), "");
}
