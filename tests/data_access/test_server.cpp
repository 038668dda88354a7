// The connection over TCP to a private Firebird server.
#include "private_server.h"
#include "test_database.h"

#include <gtest/gtest.h>

TEST(Server, PrivateServerCreatesDatabasesForItsPlainUserAndStopsByItsPid)
{
    PrivateServer server;
    TpFIBDatabase db;
    db.SQLDialect = 1;
    db.DBName = server.Connection(server.DataFolder() + "/created.fdb");
    db.DBParams = {QStringLiteral("USER '%1'").arg(PrivateServer::SeatUser),
                   QStringLiteral("PASSWORD '%1'").arg(PrivateServer::SeatPassword)};
    db.CreateDatabase();
    TpFIBTransaction tr;
    tr.SetDefaultDatabase(&db);
    tr.StartTransaction();
    TpFIBQuery q;
    q.SetDatabase(&db);
    q.SetTransaction(&tr);
    q.SetSQLText(QStringLiteral("select current_user from rdb$database"));
    q.ExecQuery();
    ASSERT_TRUE(q.Next());
    EXPECT_EQ(q.Fields(0).AsString().trimmed(), PrivateServer::SeatUser);
    tr.Commit();
    db.Close();

    server.Stop();
    EXPECT_FALSE(server.Running());
    EXPECT_ANY_THROW(db.Open());
}
