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
    // Character sets other than the default one are there.
    q.SetSQLText(QStringLiteral("select cast(current_user as varchar(31) character set win1251) from rdb$database"));
    q.ExecQuery();
    ASSERT_TRUE(q.Next());
    EXPECT_EQ(q.Fields(0).AsString().trimmed(), PrivateServer::SeatUser);
    tr.Commit();
    db.Close();

    server.Stop();
    EXPECT_FALSE(server.Running());
    EXPECT_ANY_THROW(db.Open());
}
