// How server errors become EFIBError texts, and how a database exception is cut down to its own text.
#include "fib_encoding.h"
#include "database_test.h"

#include <gtest/gtest.h>

namespace {

class Errors : public ::testing::Test
{
protected:
    void SetUp() override
    {
        t.Exec("create table AUTO (ID integer not null primary key)");
        t.Exec("create table ORDERS (ID integer not null primary key, IDAUTO integer references AUTO(ID))");
        t.Exec("create exception AUTO_HAS_ORDERS 'По автомобилю имелись заказы. Удаление запрещено'");
        t.Exec("create exception TEST_EXCEPT 'Test'");
        t.Exec("create exception ENG_EXCEPT 'Bad exception text'");
        t.Exec("create procedure spAutoDel (ID integer) as begin "
               "if (exists(select 1 from ORDERS where IDAUTO = :ID)) then exception AUTO_HAS_ORDERS; "
               "delete from AUTO where ID = :ID; end");
        t.Exec("create procedure spTest as begin exception TEST_EXCEPT; end");
        t.Exec("create procedure spEng as begin exception ENG_EXCEPT; end");
        t.Exec("insert into AUTO values (1)");
        t.Exec("insert into ORDERS values (1, 1)");
        q = t.NewQuery("Query");
    }

    TestDatabase t;
    std::unique_ptr<TpFIBQuery> q;
    TpFibErrorHandler handler;
};

} // namespace

TEST_F(Errors, WithoutAnalysisTheMessageArrivesInTheMasksParts)
{
    handler.Options = 0;
    try {
        q->ExecProcedure("spAutoDel", {1});
        FAIL();
    } catch (const EFIBInterBaseError &e) {
        EXPECT_EQ(QString("%1 %2 %3").arg(e.SQLCode).arg(e.IBErrorCode).arg(TpFibErrorHandler::KindOf(e) == keException),
                  "-836 335544517 1");
        QStringList lines = e.Message().split("\r\n");
        ASSERT_GE(lines.size(), 7) << e.Message().toStdString();
        lines[2] = lines[2].left(17);
        lines[5] = RepairUtf8Message(lines[5]);
        lines[6] = lines[6].left(12);
        EXPECT_EQ(QStringList({lines[0], lines[2], lines[3], lines[4], lines[5], lines[6]}).join('|'),
                  "Query:|SQL error state =|Exception 1.|AUTO_HAS_ORDERS.|"
                  "По автомобилю имелись заказы. Удаление запрещено.|At procedure");
    }
    EXPECT_TRUE(t.Tr().Active());

    // The mask chooses the parts: here the SQL message is left out.
    SetFIBErrorMessagesMask(2);
    const QString text = ErrorOf([&] { q->ExecProcedure("spTest"); });
    SetFIBErrorMessagesMask(30);
    EXPECT_TRUE(text.startsWith("Exception ") && text.contains(".\r\nTEST_EXCEPT.\r\nTest.\r\nAt procedure 'SPTEST'"))
        << text.toStdString();
}

TEST_F(Errors, UserExceptionIsCutDownToItsOwnTextAndConstraintErrorsReachTheUserInFull)
{
    InstallRepairHook(handler);
    EXPECT_EQ(ErrorOf([&] { q->ExecProcedure("spAutoDel", {1}); }),
              "\r\nПо автомобилю имелись заказы. Удаление запрещено.\r\n");
    EXPECT_TRUE(handler.LastErrorKind == keException && handler.ExceptionNumber > 0);
    EXPECT_EQ(handler.ExceptionName, "AUTO_HAS_ORDERS");

    EXPECT_EQ(ErrorOf([&] { q->ExecProcedure("spTest"); }).trimmed(), "Test.");
    // The query stays usable and the earlier work stays in the transaction.
    EXPECT_NO_THROW(q->ExecProcedure("spAutoDel", {2}));
    EXPECT_TRUE(t.Tr().Active());

    // An English text with the word "exception" is cut again when the SQL message lacks it: the SQL message
    // "Exception ." takes the first cut, the number line the second.
    EXPECT_EQ(ErrorOf([&] { q->ExecProcedure("spEng"); }).trimmed(), "Bad exception text.");
    SetFIBErrorMessagesMask(2 | 16);
    const QString text = ErrorOf([&] { q->ExecProcedure("spEng"); });
    SetFIBErrorMessagesMask(30);
    // Cut inside the text, the "number" is a word, and the conversion error is what comes out.
    EXPECT_EQ(text, "'text' is not a valid integer value");

    // Constraint errors reach the user in full.
    q->SetSQLText("delete from AUTO where ID = 1");
    const QString fk = ErrorOf([&] { q->ExecQuery(); });
    EXPECT_EQ(handler.LastErrorKind, keForeignKey);
    EXPECT_TRUE(fk.startsWith("Query:\r\n") && fk.contains("FOREIGN KEY")) << fk.toStdString();

    q->SetSQLText("insert into AUTO values (1)");
    const QString unique = ErrorOf([&] { q->ExecQuery(); });
    EXPECT_EQ(handler.LastErrorKind, keUniqueViolation);
    EXPECT_TRUE(unique.contains("PRIMARY")) << unique.toStdString();
}

TEST(ErrorAnalysis, NumberThatDoesNotParseReplacesTheErrorAndUtf8ReadAsAnsiIsRepaired)
{
    TpFibErrorHandler handler;
    EFIBInterBaseError e(-836, QString(), "Exception abc.\r\nNAME.\r\nText.\r\n", nullptr);
    bool raise = true;
    EXPECT_THROW(handler.DoOnErrorEvent(nullptr, e, raise), EDatabaseError);

    EFIBInterBaseError noDot(-836, QString(), "exception 12", nullptr);
    handler.DoOnErrorEvent(nullptr, noDot, raise);
    EXPECT_EQ(noDot.Message(), "12");

    // Without a Firebird connection the name is not split off, and "at " cuts the text.
    EFIBInterBaseError old(-836, QString(), "exception 3.\r\nE_X.\r\nLook at this.\r\n", nullptr);
    handler.DoOnErrorEvent(nullptr, old, raise);
    EXPECT_EQ(handler.ExceptionName + "|" + old.Message(), "Unknown|E_X.\r\nLook ");

    // UTF-8 text read as ANSI is repaired.
    const QString original = "Изделие Ёлка: ИЙКЪ шщ";
    EXPECT_EQ(RepairUtf8Message(AnsiDecode(original.toUtf8())), original);
    EXPECT_EQ(RepairUtf8Message("plain ASCII text."), "plain ASCII text.");
    // Real Windows-1251 text is no valid UTF-8: nothing is left of it.
    EXPECT_EQ(RepairUtf8Message(original), "");
}

TEST_F(Errors, LostConnectionClosesTheDatabaseAndAbortsSilently)
{
    EFIBInterBaseError lost(-902, QString(), "Connection lost.\r\n", q.get());
    lost.IBErrorCode = 335544528;
    bool raise = true;
    EXPECT_THROW(handler.DoOnErrorEvent(q.get(), lost, raise), EAbort);
    EXPECT_FALSE(t.Db().Connected() || t.Tr().Active());

    t.Db().Open();
    int calls = 0;
    t.Db().OnLostConnect = [&](TFIBDatabase *, bool &stop) {
        ++calls;
        stop = true;
    };
    EXPECT_NO_THROW(handler.DoOnErrorEvent(q.get(), lost, raise));
    EXPECT_TRUE(calls == 1 && handler.LastErrorKind == keLostConnect);
}
