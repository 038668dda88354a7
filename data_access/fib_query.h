#pragma once
// One SQL statement on the shared connection and transaction, most of all a stored procedure call.

#include "fib_database.h"
#include "fib_xsqlvar.h"

#include <QObject>
#include <QString>
#include <QVariantList>

enum TFIBStatementType {
    SQLUnknown = 0, SQLSelect = isc_info_sql_stmt_select, SQLInsert = isc_info_sql_stmt_insert,
    SQLUpdate = isc_info_sql_stmt_update, SQLDelete = isc_info_sql_stmt_delete, SQLDDL = isc_info_sql_stmt_ddl,
    SQLExecProcedure = isc_info_sql_stmt_exec_procedure, SQLSelectForUpdate = isc_info_sql_stmt_select_for_upd,
    SQLCommit = isc_info_sql_stmt_commit, SQLRollback = isc_info_sql_stmt_rollback
};

class TFIBQuery : public QObject, public TFIBDatabaseClient
{
public:
    explicit TFIBQuery(QObject *owner = nullptr);
    ~TFIBQuery() override;

    // Statement text; changing it frees the prepared statement.
    QString SQLText() const { return m_sql; }
    void SetSQLText(const QString &text);

    TFIBDatabase *Database() const { return m_database; }
    void SetDatabase(TFIBDatabase *database);
    TFIBTransaction *Transaction() const { return m_transaction; }
    void SetTransaction(TFIBTransaction *transaction);
    int Options = 0;

    TFIBXSQLDA &Params() { return m_params; }
    TFIBXSQLDA &Fields() { return m_fields; }
    // A result column by index; a bad index raises with "Field No: " and the index.
    TFIBXSQLVAR &Fields(int index);
    TFIBXSQLVAR &FieldByName(const QString &name);
    // Both prepare the statement first when it is not.
    TFIBXSQLVAR &ParamByName(const QString &name);
    TFIBXSQLVAR *FindParam(const QString &name);

    bool Prepared() const { return m_prepared; }
    bool Open() const { return m_open; }
    bool Eof() const { return m_eof; }
    TFIBStatementType StatementType() const { return m_statementType; }
    // Whether the text is schema DDL, run by immediate execution without prepare.
    bool IsDDL() const { return m_isDDL; }
    // How many times a text was sent to the server for preparing, for watching statement reuse.
    int PrepareCount() const { return m_prepareCount; }

    void Prepare();
    void ExecQuery();
    // Fetches the next row of an open select into Fields; false at the end.
    bool Next();
    void Close();
    void FreeHandle();

    // The call form of all windows: "EXECUTE  PROCEDURE name(?P0,?P1,…)", reusing the prepared statement.
    void ExecProcedure(const QString &name, const QVariantList &values);
    void ExecProcedure(const QString &name);

    ISC_QUAD WriteBlob(const QByteArray &bytes);
    QByteArray ReadBlob(const ISC_QUAD &id);

    // The text with ":NAME" and "?NAME" replaced by "?", and the names in order.
    static QString PreprocessParams(const QString &sql, QStringList &names);

    TFIBDatabase *FIBDatabase() const override { return m_database; }
    void DatabaseClosing() override;
    void TransactionEnded(TFIBTransaction *transaction) override;

protected:
    void CheckReady(const QString &operation);
    void ReadBlobColumns();
    void CommitWriteIfAsked();

private:
    QString m_sql;
    TFIBDatabase *m_database = nullptr;
    TFIBTransaction *m_transaction = nullptr;
    isc_stmt_handle m_stmt = 0;
    bool m_prepared = false;
    bool m_open = false;
    bool m_eof = true;
    bool m_isDDL = false;
    bool m_hasBlobColumns = false;
    int m_prepareCount = 0;
    TFIBStatementType m_statementType = SQLUnknown;
    TFIBXSQLDA m_params{this, true};
    TFIBXSQLDA m_fields{this, false};
};

class TpFIBQuery : public TFIBQuery
{
public:
    using TFIBQuery::TFIBQuery;
};
