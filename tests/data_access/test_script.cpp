// Splitting scripts into statements, and running them against a real embedded database.
#include "fib_script.h"
#include "database_test.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

QStringList linesOf(const QString &text) { return text.split(QLatin1Char('\n')); }

QStringList split(const QString &text, const QStringList &defines = {})
{
    TpFIBScriptParser parser;
    parser.ParseScript(linesOf(text), QStringLiteral(";"), defines);
    QStringList texts;
    for (int i = 0; i < parser.Count(); ++i)
        texts << parser.StatementText(i);
    return texts;
}

// Each statement as "start line-end line:end column text", joined by " | ".
QString layout(const QString &text)
{
    TpFIBScriptParser parser;
    parser.ParseScript(linesOf(text));
    QStringList out;
    for (int i = 0; i < parser.Count(); ++i) {
        const TFIBScriptStatement st = parser.Statement(i);
        out << QString("%1-%2:%3 %4").arg(st.StartLine).arg(st.EndLine).arg(st.EndPos).arg(parser.StatementText(i));
    }
    return out.join(" | ");
}

QString parseError(const QString &text, const QStringList &defines = {})
{
    return ErrorOf([&] { split(text, defines); });
}

QString runError(const QString &text, int first = 1)
{
    TpFIBScripter s;
    s.SetScriptText(text);
    return ErrorOf([&] { s.ExecuteScript(first); });
}

} // namespace

// --- splitting ------------------------------------------------------------------------------

TEST(ScriptSplit, BodiesCommentsTerminatorsSetTermPositionsDirectivesAndConditionals)
{
    // Bodies end at their END whatever ";" stands inside; each is followed here by COMMIT.
    const QStringList bodies = {
        "CREATE TRIGGER T FOR X AS BEGIN IF (A) THEN B = 1; END",
        // Declarations stand between AS and BEGIN, each with its own ";".
        "CREATE TRIGGER INS_ROLES FOR ROLES ACTIVE BEFORE INSERT POSITION 0\nAS\n"
        "  DECLARE VARIABLE NEWROLENAME varchar(15);\n  DECLARE VARIABLE N integer = 0;\n"
        "BEGIN\n  IF (NEW.ID IS NULL) THEN\n    NEW.ID = GEN_ID(GEN_ROLES, 1);\nEND",
        "CREATE OR ALTER PROCEDURE P (A integer) RETURNS (R integer)\nAS\nBEGIN\n  IF (A > 0) THEN\n  BEGIN\n"
        "    R = CASE A WHEN 1 THEN 10 ELSE 20 END;\n"
        "    R = (CASE WHEN A = 2 THEN 1 END) + COALESCE(CASE A WHEN 3 THEN 3 END, 0);\n"
        "    R = (CASE WHEN A = 4 THEN 1 ELSE 2 END + 1);\n  END\n  ELSE\n    BEGIN R = 0; END\n  SUSPEND;\nEND",
        "EXECUTE BLOCK AS\n  DECLARE S varchar(20) = 'a begin b';\nBEGIN\n"
        "  S = 'x BEGIN CASE y' || \"z begin\"; -- begin\n  /* begin\n     case; */\nEND",
        // A statement without AS is complete at its first ";".
        "ALTER TRIGGER T INACTIVE",
    };
    for (const QString &body : bodies)
        EXPECT_EQ(split(body + ";\nCOMMIT;"), QStringList({body, "COMMIT"}));

    const struct { const char *script; QStringList statements; } cases[] = {
        // Were DROP scanned, the name would read as AS and the statement would run on past its ";".
        {"DROP PROCEDURE As;\nDROP TRIGGER As;\nCOMMIT;", {"DROP PROCEDURE As", "DROP TRIGGER As", "COMMIT"}},
        {"SET TERM\n!! ;\nSELECT 1 FROM X!!\nSELECT 2!!x FROM Y!!\nSET TERM ; !!\nSELECT 3;",
         {"SELECT 1 FROM X", "SELECT 2!!x FROM Y", "SELECT 3"}},
        {";\n;--------------------------- CONFIG -----------\n  ; ;\nCREATE TABLE CONFIG (ID INTEGER);\n"
         ";--------------------------- ROLES -----------",
         {"CREATE TABLE CONFIG (ID INTEGER)"}},
        // A terminator needs a separator after it.
        {"COMMIT;ROLLBACK", {"COMMIT;ROLLBACK"}},
        {"SELECT 1;1 FROM X;-- c\nSELECT 2;/* c */", {"SELECT 1;1 FROM X", "SELECT 2"}},
        // Comments between statements belong to none; inside they are kept.
        {"-- heading; not a statement\n/* COMMIT;\n   INSERT INTO T VALUES (0); */\nINSERT INTO T VALUES (1); -- x\n"
         "UPDATE T /* x; */ SET A = 2 -- y;\n  WHERE B = 1;\nINSERT INTO T VALUES ('a; b', \"c;\nd\", 'it''s; ');",
         {"INSERT INTO T VALUES (1)", "UPDATE T /* x; */ SET A = 2 -- y;\n  WHERE B = 1",
          "INSERT INTO T VALUES ('a; b', \"c;\nd\", 'it''s; ')"}},
        // A body still open at the end is kept whole.
        {"CREATE TRIGGER T FOR X AS BEGIN A = 1;", {"CREATE TRIGGER T FOR X AS BEGIN A = 1;"}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(split(QString::fromUtf8(c.script)), c.statements) << c.script;

    EXPECT_EQ(layout("set term ^ ;\nCREATE PROCEDURE P AS\nBEGIN\n  EXIT;\nEND^\nSET TERM ; ^\nCOMMIT;"),
              "1-4:3 CREATE PROCEDURE P AS\nBEGIN\n  EXIT;\nEND | 6-6:6 COMMIT");
    // A statement ends at the text's end or before a terminator in column one.
    EXPECT_EQ(layout("SELECT 1\n;\nSELECT 2\n  FROM X"), "0-0:8 SELECT 1 | 2-3:8 SELECT 2\n  FROM X");
    // Brace comments and directives are statements of their own kinds.
    TpFIBScriptParser parser;
    parser.ParseScript(linesOf("{ a brace\n comment }\n{$DEFINE LOCAL}\nSELECT 1;"));
    ASSERT_EQ(parser.Count(), 3);
    EXPECT_EQ(QList<int>({parser.Statement(0).Kind, parser.Statement(1).Kind, parser.Statement(2).Kind}),
              QList<int>({skEmpty, skDirective, skSQL}));
    EXPECT_EQ(parser.StatementText(0) + "|" + parser.StatementText(1), "{ a brace\n comment }|{$DEFINE LOCAL}");

    const QString conditional = "{$IFDEF FULL}\nSELECT 1;\n{$IFNDEF DEMO} SELECT 2; {$ELSE} SELECT 3; {$ENDIF}\n"
                                "{$ELSE}\nSELECT 4; {$IFDEF DEMO} SELECT 5; {$ENDIF}\n{$ENDIF}\nSELECT 6;";
    EXPECT_EQ(split(conditional, {"FULL"}), QStringList({"SELECT 1", "SELECT 2", "SELECT 6"}));
    EXPECT_EQ(split(conditional, {"full", "DEMO"}), QStringList({"SELECT 1", "SELECT 3", "SELECT 6"}));
    EXPECT_EQ(split(conditional, {"DEMO"}), QStringList({"SELECT 4", "SELECT 5", "SELECT 6"}));
    EXPECT_EQ(split(conditional), QStringList({"SELECT 4", "SELECT 6"}));
    // A name defined earlier in the same text counts.
    EXPECT_EQ(split("{$DEFINE FULL}\n" + conditional).mid(1), QStringList({"SELECT 1", "SELECT 2", "SELECT 6"}));
}

TEST(ScriptSplit, KindsObjectKindsNamesAndTheParsersAndRunnersErrorTexts)
{
    struct Case { const char *text; int kind, objectKind = sokNone; const char *name = ""; };
    // The runner tests cover the kinds it acts on itself (connections, DESCRIBE, INPUT, BATCH, REINSERT).
    const Case cases[] = {
        {"SELECT 1 FROM RDB$DATABASE", skSQL}, {"- 1", skEmpty}, {"DELETE FROM T", skDML}, {"COMMIT WORK", skCommit},
        {"MERGE INTO T USING S ON 1 = 1 WHEN MATCHED THEN DELETE", skDML}, {"ROLLBACK", skRollback},
        {"EXECUTE BLOCK AS BEGIN END", skDML, sokBlock}, {"CREATE TABLE CONFIG (ID INTEGER)", skCreate, sokTable, "CONFIG"},
        {"CREATE DOMAIN D AS INTEGER", skCreate, sokDomain, "D"}, {"CREATE VIEW V AS SELECT 1 FROM X", skCreate, sokView, "V"},
        {"create or alter procedure spOrderEdit(A integer) as begin end", skCreate, sokProcedure, "spOrderEdit"},
        {"CREATE TRIGGER INS_CONFIG FOR CONFIG AS BEGIN END", skCreate, sokTrigger, "INS_CONFIG"},
        {"DECLARE EXTERNAL FUNCTION F CSTRING(10) RETURNS INTEGER ENTRY_POINT 'f' MODULE_NAME 'm'", skDeclare,
         sokExternalFunction, "F"},
        {"CREATE FUNCTION F RETURNS INTEGER AS BEGIN RETURN 1; END", skCreate, sokFunction, "F"},
        {"CREATE EXCEPTION ROLE_HAS_NAME 'text'", skCreate, sokException, "ROLE_HAS_NAME"},
        {"CREATE GENERATOR GEN_CONFIG", skCreate, sokGenerator, "GEN_CONFIG"},
        {"CREATE UNIQUE DESCENDING INDEX IX ON T (A)", skCreate, sokIndex, "IX"},
        {"DECLARE FILTER FL INPUT_TYPE 1 OUTPUT_TYPE 2", skDeclare, sokFilter, "FL"},
        {"CREATE ROLE R", skCreate, sokRole, "R"}, {"CREATE USER U PASSWORD 'p'", skCreate, sokUser, "U"},
        {"CREATE PACKAGE PK AS BEGIN END", skCreate, sokPackage, "PK"},
        {"RECREATE PACKAGE BODY PK AS BEGIN END", skRecreate, sokPackageBody, "PK"},
        {"ALTER TABLE T ADD CONSTRAINT C UNIQUE (A)", skAlter, sokTable, "T"},
        {"DROP PROCEDURE \"Mixed\"", skDrop, sokProcedure, "\"Mixed\""},
        {"SET GENERATOR GEN_CONFIG TO 5", skSetGenerator, sokGenerator, "GEN_CONFIG"},
        {"SET STATISTICS INDEX IX", skSetStatistics, sokIndex, "IX"}, {"COMMENT ON TABLE T IS 'x'", skComment},
        {"GRANT SELECT ON T TO PUBLIC", skGrant}, {"BATCH", skBatch}, {"EXECUTE PROCEDURE P", skExecute},
        {"-- leading comment\nINSERT INTO T VALUES (1)", skInsert},
    };
    for (const Case &c : cases) {
        TpFIBScriptParser parser;
        parser.ParseScript(linesOf(QString::fromUtf8(c.text) + ";"));
        ASSERT_EQ(parser.Count(), 1) << c.text;
        const TFIBScriptStatement st = parser.Statement(0);
        EXPECT_EQ(QString("%1 %2 %3").arg(st.Kind).arg(st.ObjectKind).arg(st.ObjectName),
                  QString("%1 %2 %3").arg(c.kind).arg(c.objectKind).arg(c.name)) << c.text;
    }

    // The parser's and the runner's error texts.
    EXPECT_EQ(parseError("SELECT 1\n  FROM {X};"), "Parse script error.\r\n Unexpected symbol \"{\"\r\nLine :2 Pos:8");
    // Inside a string it is just a character.
    EXPECT_EQ(parseError("SELECT '{' FROM X;"), "<no error>");

    EXPECT_EQ(parseError("{$IFDEF A}\nSELECT 1;"), "Parse script error.\r\n$ENDIF skipped 1 times");
    EXPECT_EQ(parseError("{$IFDEF A}\n{$IFDEF B}\nSELECT 1;\n{$ENDIF}"), "Parse script error.\r\n$ENDIF skipped 1 times");
    EXPECT_EQ(parseError("{$IFDEF A}\n{$IFDEF B}\nSELECT 1;", {"A"}), "Parse script error.\r\n$ENDIF skipped 2 times");

    EXPECT_EQ(parseError("SELECT 1;\n\n{$ENDIF}"), "Parse script error.\r\nCan't resolve directive  \"$ENDIF\"\r\nLine 3");
    EXPECT_EQ(parseError("{$IFDEF}"), "Parse script error.\r\nCan't resolve directive  \"$IFDEF\"\r\nLine 1");
    EXPECT_EQ(parseError("{$IFDEF A}{$ELSE}{$ELSE}{$ENDIF}"),
              "Parse script error.\r\nCan't resolve directive  \"$ELSE\"\r\nLine 1");
    EXPECT_EQ(parseError("{$DEFINE A"), "Parse script error.\r\nCan't resolve directive  \"$DEFINE A\"\r\nLine 1");

    // The runner's own errors, before any server work.
    EXPECT_EQ(runError("COMMIT;\nCOMMIT;", 3), "Statement №3 don't exist");
    EXPECT_EQ(runError("COMMIT;", 0), "Statement №0 don't exist");
    EXPECT_EQ(runError("\n"), "<no error>"); // the empty updater script
    EXPECT_EQ(runError("\n\n{$FOO BAR}\nCOMMIT;"), "Unknown directive :\r\nLine 3\r\n{$FOO BAR}");
    EXPECT_EQ(runError("BATCH START;"), "Batch execute support for IB2007 only");
    EXPECT_EQ(runError("BATCH EXECUTE;"), "Batch execute support for IB2007 only");
    EXPECT_EQ(runError("DESCRIBE WIDGET W 'x';"), "Unsupported DESCRIBE type WIDGET");
}

// --- running --------------------------------------------------------------------------------

namespace {

class ScriptRun : public ::testing::Test
{
protected:
    void SetUp() override
    {
        s.setObjectName("ScriptTables");
        s.SetDatabase(&t.Db());
        s.SetTransaction(&t.Tr());
    }

    void Run(const QString &text, int first = 1)
    {
        s.SetScriptText(text);
        s.ExecuteScript(first);
    }

    bool TableExists(const QString &name)
    {
        return t.Scalar("select count(*) from rdb$relations where rdb$relation_name = '" + name + "'").toInt() == 1;
    }

    int Rows(const QString &table) { return t.Scalar("select count(*) from " + table).toInt(); }

    TestDatabase t;
    TpFIBScripter s; // after the database: it goes first
};

} // namespace

TEST_F(ScriptRun, AFailingStatementStopsTheRunUnlessTheHandlerSaysOtherwiseAutoDDLCommitsAndSetStatementsStayWithTheRunner)
{
    try {
        Run("CREATE TABLE A (ID INTEGER);\nINSERT INTO A VALUES (1);\nINSERT INTO A VALUES (2);\n"
            "INSERT INTO MISSING VALUES (3);\nCREATE TABLE B (ID INTEGER);");
        FAIL() << "the run went through";
    } catch (const EFIBInterBaseError &e) {
        EXPECT_EQ(e.SQLCode, -204);
    }
    // The inserts before it are pending in the same transaction.
    EXPECT_EQ(QString("%1 %2 %3 %4").arg(s.CurrentStatement()).arg(t.Tr().Active()).arg(Rows("A")).arg(TableExists("B")),
              "4 1 2 0");

    t.Tr().Rollback();
    EXPECT_TRUE(TableExists("A") && Rows("A") == 0); // the DDL was committed at once

    // A handler decides on rollback and stop.
    QList<int> failed;
    QString failedText;
    s.OnExecuteError = [&](TpFIBScripter *, int no, int line, const QString &text, const EFIBError &, bool &, bool &) {
        failed << no << line;
        failedText = text;
    };
    Run("INSERT INTO A VALUES (1);\n\nINSERT INTO A VALUES ('x');\nINSERT INTO A VALUES (3);");
    EXPECT_EQ(failed, QList<int>({2, 3}));
    EXPECT_EQ(failedText, "INSERT INTO A VALUES ('x')");
    EXPECT_TRUE(!t.Tr().Active() && Rows("A") == 0); // rolled back, and the third insert never ran

    s.OnExecuteError = [&](TpFIBScripter *, int, int, const QString &, const EFIBError &, bool &rollback, bool &stop) {
        rollback = false;
        stop = false;
    };
    Run("INSERT INTO A VALUES (1);\nINSERT INTO A VALUES ('x');\nINSERT INTO A VALUES (3);");
    EXPECT_EQ(Rows("A"), 2);

    // AutoDDL commits each schema statement, and the SET statements stay with the runner.
    Run("CREATE TABLE D (ID INTEGER);\nINSERT INTO D VALUES (1);\nCREATE GENERATOR G;");
    EXPECT_TRUE(!t.Tr().Active() && Rows("D") == 1); // the insert went with the generator's commit

    Run("INSERT INTO D VALUES (2);\nSET AUTODDL OFF;\nCREATE TABLE E (ID INTEGER);");
    EXPECT_FALSE(s.AutoDDL);
    ASSERT_TRUE(t.Tr().Active());
    t.Tr().Rollback();
    EXPECT_TRUE(!TableExists("E") && Rows("D") == 1);

    Run("SET AUTODDL ON;\nCREATE TABLE E (ID INTEGER);\nINSERT INTO E VALUES (1);");
    t.Tr().Rollback();
    EXPECT_TRUE(TableExists("E") && Rows("E") == 0);

    // COMMIT and ROLLBACK on an inactive transaction do nothing.
    t.Tr().Commit();
    EXPECT_NO_THROW(Run("COMMIT;\nROLLBACK;\nCOMMIT WORK;"));
    EXPECT_FALSE(t.Tr().Active());

    const int charSet = t.Db().AttachmentCharSet();
    Run("SET NAMES WIN1251;\nSET SQL DIALECT 1;\nSET CLIENTLIB 'fbembed.dll';\nSET ECHO ON;\n"
        "CREATE TABLE C (S VARCHAR(20));\nINSERT INTO C VALUES ('Привет');\nCOMMIT;");
    EXPECT_EQ(t.Db().AttachmentCharSet(), charSet);
    EXPECT_EQ(QString("%1 %2 ").arg(s.CharSet()).arg(s.SQLDialect()) + s.ClientLibrary, "WIN1251 1 fbembed.dll");
    EXPECT_EQ(t.Scalar("select S from C").toString(), "Привет");

    // Dialect and character set start afresh with every run.
    Run("COMMIT;");
    EXPECT_EQ(QString("%1 %2").arg(s.SQLDialect()).arg(s.CharSet()), "3 ");
}

TEST_F(ScriptRun, StartsAtTheGivenStatementReparsesAChangedScriptAndRunsDescribeInputAndBodies)
{
    Run("CREATE TABLE A (ID INTEGER);");
    s.SetScriptText("INSERT INTO A VALUES (1);\nINSERT INTO A VALUES (2);\nREINSERT;");
    EXPECT_FALSE(s.Parsed());
    s.ExecuteScript(2);
    EXPECT_TRUE(s.Parsed());
    EXPECT_EQ(t.Scalar("select list(ID, ',') from A").toString(), "2,2");

    s.SetScript({"INSERT INTO A VALUES (3);"});
    EXPECT_FALSE(s.Parsed());
    s.ExecuteScript(1);
    EXPECT_EQ(Rows("A"), 3);

    Run("DESCRIBE TABLE A 'Plain note';\nDESCRIBE COLUMN A.ID 'Key';");
    EXPECT_EQ(t.Scalar("select cast(r.rdb$description || '/' || f.rdb$description as varchar(40)) from rdb$relations r "
                       "join rdb$relation_fields f on f.rdb$relation_name = r.rdb$relation_name "
                       "where r.rdb$relation_name = 'A'").toString(), "Plain note/Key");

    auto write = [&](const char *name, const char *text) {
        QFile f(QDir(t.Folder()).filePath(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
        return f.fileName();
    };
    // Bodies run whole without SET TERM (the shop's own scripts show them with it).
    write("more.sql", "CREATE PROCEDURE ADD_A (N INTEGER) AS\r\nBEGIN\r\n  INSERT INTO A VALUES (:N);\r\nEND;\r\n"
                      "EXECUTE PROCEDURE ADD_A(7);\r\nSET AUTODDL OFF;\r\n");
    s.LoadScriptFromFile(write("main.sql", "{$DEFINE LOCAL}\nINPUT more.sql;\n"
                                           "EXECUTE BLOCK AS BEGIN INSERT INTO A VALUES (8); END;\n"));
    s.ExecuteScript();
    EXPECT_EQ(t.Scalar("select list(ID, ',') from A where ID > 5").toString(), "7,8");
    EXPECT_TRUE(!s.AutoDDL && s.ActiveDefines().contains("LOCAL")); // a nested script's settings hold afterwards
}

TEST(ScriptDatabase, CreateConnectDisconnectAndDropDatabase)
{
    QTemporaryDir dir;
    const QString path = QDir(dir.path()).filePath("made.fdb");
    TpFIBDatabase db;
    db.setObjectName("dbScript");
    TpFIBScripter s; // with a transaction of its own
    s.SetDatabase(&db);

    s.SetScriptText("SET SQL DIALECT 1;\nCREATE DATABASE '" + path + "' PAGE_SIZE 8192;\n"
                    "CREATE TABLE Z (ID INTEGER, D DATE);\nINSERT INTO Z VALUES (1, '2024-01-02 10:11:12');\nDISCONNECT;");
    s.ExecuteScript();
    EXPECT_FALSE(db.Connected());
    ASSERT_TRUE(QFile::exists(path));

    s.SetScriptText("CONNECT '" + path + "' USER 'SYSDBA' PASSWORD 'x';\nINSERT INTO Z VALUES (2, NULL);\nCOMMIT;");
    s.ExecuteScript();
    ASSERT_TRUE(db.Connected());
    EXPECT_EQ(QString("%1 ").arg(db.DatabaseSQLDialect()) + s.ConnectUser(), "1 SYSDBA");
    {
        TpFIBTransaction tr;
        tr.SetDefaultDatabase(&db);
        tr.StartTransaction();
        TpFIBQuery q;
        q.SetDatabase(&db);
        q.SetTransaction(&tr);
        // The first insert went with DISCONNECT's rollback.
        q.SetSQLText("select count(*) || ' ' || coalesce(max(extract(hour from D)), 'null') from Z");
        q.ExecQuery();
        EXPECT_EQ(q.Next() ? q.Fields(0).AsString() : "<no row>", "1 null");
        q.Close();
        tr.Commit();
    }

    s.SetScriptText("RECONNECT;\nDROP DATABASE;");
    s.ExecuteScript();
    EXPECT_FALSE(db.Connected() || QFile::exists(path));
}
