#pragma once
// A test on its own copy of the deployed database, reading database exceptions as the user reads them.

#include "fib_dataset.h"
#include "test_database.h"

#include <QVariantMap>
#include <functional>
#include <gtest/gtest.h>

// The data module's repair of exception texts: UTF-8 bytes that were read as ANSI.
void InstallRepairHook(TpFibErrorHandler &handler);

// The message of what `f` raises, or "<no error>".
QString ErrorOf(const std::function<void()> &f);

class DeployedDatabaseTest : public ::testing::Test
{
protected:
    using Row = QVariantMap;

    DeployedDatabaseTest();

    // EXECUTE PROCEDURE with positional values, as the cards call it; the first output, if any.
    QVariant Call(const QString &name, const QVariantList &values = {});
    // An INSERT with "returning ID" added; the new row's ID.
    int Insert(const QString &sql);
    // The name of the database exception that refuses the statement; empty when it passes or fails otherwise.
    // The text the user would see is kept in refusalText, the code in refusalCode.
    QString Refusal(const QString &sql);
    // Opens a selectable procedure through a dataset, binding parameters by name, and reads all rows;
    // `columns` gets the column names in order.
    QList<Row> Select(const QString &sql, const QVariantMap &params = {}, QStringList *columns = nullptr);
    // What the user reads of the error `f` raises.
    static QString UserText(const std::function<void()> &f) { return ErrorOf(f).trimmed(); }

    // What a statement gives, as text: columns joined by "|", rows by "; ", null as "null", numbers to seven
    // digits, moments without seconds; empty when it gives nothing, what the user reads when it fails.
    // A statement that starts with a procedure's name ("sp…") executes that procedure.
    QString Rows(const QString &sql);
    // Statements in order, each with the text Rows must give (empty by default); an expectation that
    // starts with "~" need only be contained in it.
    struct Step
    {
        QString sql, expected;
    };
    void Expect(const QList<Step> &steps);
    // Inserts each row of values into `table`, given with its column list; every insert must pass.
    void Fill(const QString &table, const QStringList &rows);
    // "TABLE:rows" for every table of the schema, for seeing that refused statements changed nothing.
    QString Counts();

    DeployedDatabase db;
    TpFibErrorHandler handler;
    std::unique_ptr<TpFIBQuery> query;
    QString refusalText;
    int refusalCode = 0;
};
