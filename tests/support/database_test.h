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

    DeployedDatabase db;
    TpFibErrorHandler handler;
    std::unique_ptr<TpFIBQuery> query;
    QString refusalText;
    int refusalCode = 0;
};
