// Connection facts, the transaction's ends and the client-side texts, on real embedded databases.
#include "database_test.h"

#include <gtest/gtest.h>

TEST(Connection, NewDatabaseHasDialectOneCharsetNoneAndComputedFactsAndCloseEndsTheTransaction)
{
    TestDatabase t;
    TpFIBDatabase &db = t.Db();
    // connected, dialects, Firebird, charset, unicode connect, field translation, UTF-8 DDL
    const auto facts = [&] {
        return QString("%1 %2 %3 %4 %5 %6 %7 %8").arg(db.Connected()).arg(db.DatabaseSQLDialect()).arg(db.SQLDialect)
            .arg(db.IsFirebirdConnect()).arg(db.AttachmentCharSet()).arg(db.IsUnicodeConnect())
            .arg(db.NeedUnicodeFieldsTranslation()).arg(db.NeedUTFEncodeDDL());
    };
    EXPECT_EQ(facts(), "1 1 1 1 0 0 1 1");
    EXPECT_TRUE(db.ServerMajorVersion() >= 3 && db.ODSMajorVersion() >= 12);
    // Reattached, the same facts come from the database, not from creation. (That a close rolls the run back
    // is the data module's start suite's: its killed run keeps nothing.)
    t.Tr().StartTransaction();
    db.Close();
    EXPECT_FALSE(db.Connected() || t.Tr().Active());
    db.SetConnected(true);
    EXPECT_EQ(facts(), "1 1 1 1 0 0 1 1");

    // The UTF-8 DDL fact depends on the character set and on the server and structure versions.
    struct Row { int cs, major, minor, odsMajor, odsMinor; bool expected; };
    const Row rows[] = {
        {0, 3, 0, 12, 0, true},  {0, 2, 1, 11, 1, true},  {0, 2, 0, 11, 1, false}, {0, 2, 1, 11, 0, false},
        {0, 1, 5, 10, 1, false}, {4, 2, 5, 11, 2, true},  {3, 3, 0, 12, 0, true},  {52, 3, 0, 12, 0, false},
    };
    for (const Row &r : rows)
        EXPECT_EQ(TFIBDatabase::ComputeNeedUTFEncodeDDL(r.cs, r.major, r.minor, r.odsMajor, r.odsMinor), r.expected)
            << r.cs << " " << r.major << "." << r.minor << " ods " << r.odsMajor << "." << r.odsMinor;
}

TEST(Connection, ClientSideConditionsUseTheirTextsAndAMissingFileRaisesAServerErrorLeavingTheObjectUsable)
{
    TestDatabase t;
    EXPECT_EQ(ErrorOf([&] { t.Db().CreateDatabase(); }), "Cannot perform operation -- DB is currently open.");

    TpFIBDatabase unnamed;
    EXPECT_EQ(ErrorOf([&] { unnamed.Open(); }), "Database name is missing.");

    TpFIBTransaction lonely;
    lonely.setObjectName("trLonely");
    EXPECT_EQ(ErrorOf([&] { lonely.StartTransaction(); }), "trLonely :No databases are listed in transaction component.");
    EXPECT_EQ(ErrorOf([&] { lonely.Commit(); }), "trLonely :Transaction is not active.");

    TFIBTransaction plain;
    plain.setObjectName("trPlain");
    plain.SetDefaultDatabase(&t.Db());
    plain.StartTransaction();
    EXPECT_EQ(ErrorOf([&] { plain.StartTransaction(); }), "trPlain :Transaction is active.");
    plain.Rollback();

    // The program's transaction accepts a second start, as every statement of the data module's tests shows.
    auto q = t.NewQuery("qryTest");
    q->SetSQLText("select 1 from rdb$database");
    EXPECT_EQ(ErrorOf([&] { q->ExecQuery(); }), "pFIBTransaction1 :Transaction is not active.");
    TpFIBQuery orphan;
    orphan.setObjectName("qryOrphan");
    orphan.SetSQLText("select 1 from rdb$database");
    EXPECT_EQ(ErrorOf([&] { orphan.ExecQuery(); }), "Database not assigned for qryOrphan.");
    orphan.SetDatabase(&t.Db());
    EXPECT_EQ(ErrorOf([&] { orphan.ExecQuery(); }), "Transaction not assigned for qryOrphan.");
    q->SetSQLText("  ");
    EXPECT_EQ(ErrorOf([&] { q->Prepare(); }), "Can't Prepare , because  query is empty");

    t.Db().Close();
    t.Db().setObjectName("dbMain");
    EXPECT_EQ(ErrorOf([&] { t.Tr().StartTransaction(); }), "dbMain: Cannot perform operation -- DB is not open.");

    // A missing file raises a server error and leaves the object usable. (A file that is no database is refused
    // each time by the data module's start, which tries five times.)
    QTemporaryDir dir;
    TpFIBDatabase db;
    db.SQLDialect = 1;
    db.DBName = dir.filePath("missing/none.fdb");
    EXPECT_THROW(db.Open(), EFIBInterBaseError);
    EXPECT_FALSE(db.Connected());
    db.DBName = dir.filePath("good.fdb");
    db.CreateDatabase();
    EXPECT_TRUE(db.Connected());
}
