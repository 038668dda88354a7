#pragma once
// A real embedded database in a temporary folder, with the program's connection settings.

#include "fib_database.h"
#include "fib_errors.h"
#include "fib_query.h"

#include <QTemporaryDir>
#include <memory>
#include <ostream>

inline void PrintTo(const QString &s, std::ostream *os) { *os << '"' << s.toStdString() << '"'; }

class TestDatabase
{
public:
    // Creates a new dialect 1 database `fileName` inside a fresh temporary folder, or attaches a copy of
    // `copyOf` under that name.
    explicit TestDatabase(const QString &fileName = QStringLiteral("test.fdb"), const QString &copyOf = QString());
    ~TestDatabase();

    QString Path() const { return m_path; }
    QString Folder() const { return m_dir.path(); }
    TpFIBDatabase &Db() { return *m_db; }
    TpFIBTransaction &Tr() { return *m_tr; }
    // A query on the connection, named as given.
    std::unique_ptr<TpFIBQuery> NewQuery(const QString &name = QStringLiteral("Query"));
    // Runs one statement in the transaction (started when needed).
    void Exec(const QString &sql);
    // First column of the first row of a select.
    QVariant Scalar(const QString &sql);

    // Commits when active, then starts again: what a test saw stays, as at the end of a run.
    void CommitAndRestart();

private:
    QTemporaryDir m_dir;
    QString m_path;
    std::unique_ptr<TpFIBDatabase> m_db;
    std::unique_ptr<TpFIBTransaction> m_tr;
};

// A database deployed by the data module once per test process; every caller gets the same file,
// which it must only copy.
QString DeployedTemplatePath();

// A fresh copy of the fully deployed database, attached with the program's settings.
class DeployedDatabase : public TestDatabase
{
public:
    DeployedDatabase() : TestDatabase(QStringLiteral("database.fdb"), DeployedTemplatePath()) {}
};
