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
    DeployedDatabaseTest();

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
};
