#pragma once
// The one connection and the one transaction of the program, written on the client library.

#include "fib_library.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class TFIBDatabase;
class TFIBTransaction;

// Anything bound to a database and a transaction: told when either goes away under it.
class TFIBDatabaseClient
{
public:
    virtual ~TFIBDatabaseClient() = default;
    virtual TFIBDatabase *FIBDatabase() const = 0;
    // The attachment is about to end: statement handles become invalid.
    virtual void DatabaseClosing() {}
    // The transaction ended: open cursors are gone on the server.
    virtual void TransactionEnded(TFIBTransaction *) {}
};

class TFIBDatabase : public QObject, public TFIBDatabaseClient
{
public:
    explicit TFIBDatabase(QObject *owner = nullptr);
    ~TFIBDatabase() override;

    TFIBTransaction *DefaultTransaction = nullptr;
    int SQLDialect = 3;
    int Timeout = 0;
    QString LibraryName;
    int WaitForRestoreConnect = 0;
    QString DBName;
    QStringList DBParams;
    // For a database on a server: who attaches and creates, and how many seconds the client waits for the
    // server to answer an attach (0: the client library's own wait). All empty for the embedded engine.
    QString UserName;
    QString Password;
    int ConnectTimeout = 0;
    // Called when the connection is found lost; setting the flag keeps the application running.
    std::function<void(TFIBDatabase *, bool &stop)> OnLostConnect;

    void CreateDatabase();
    void Open();
    void Close();
    // Removes the attached database file for good.
    void DropDatabase();
    bool Connected() const { return m_handle != 0; }
    void SetConnected(bool value);
    // Whether the last Open failed because the engine found no database file under the name.
    bool LastOpenFoundNoFile() const { return m_lastOpenFoundNoFile; }

    // Facts of the attachment, computed after attach or creation.
    bool IsFirebirdConnect() const { return m_isFirebird; }
    int ServerMajorVersion() const { return m_serverMajor; }
    int ServerMinorVersion() const { return m_serverMinor; }
    QString ServerVersion() const { return m_serverVersion; }
    int ODSMajorVersion() const { return m_odsMajor; }
    int ODSMinorVersion() const { return m_odsMinor; }
    int DatabaseSQLDialect() const { return m_dbDialect; }
    int AttachmentCharSet() const { return m_charSet; }
    bool IsUnicodeConnect() const { return m_charSet == 3 || m_charSet == 4; }
    bool NeedUnicodeFieldsTranslation() const { return IsUnicodeConnect() || m_charSet == 0; }
    bool NeedUTFEncodeDDL() const;
    static bool ComputeNeedUTFEncodeDDL(int charSet, int serverMajor, int serverMinor, int odsMajor, int odsMinor);

    isc_db_handle *Handle() { return &m_handle; }
    TFIBClientLibrary &Client() const;
    // Raises "%s: Cannot perform operation -- DB is not open." when closed.
    void CheckActive() const;

    void MarkConnectionLost();
    void DoConnectionLost(bool &stop);
    static QList<TFIBDatabase *> AllDatabases();

    void AddClient(TFIBDatabaseClient *client);
    void RemoveClient(TFIBDatabaseClient *client);

    TFIBDatabase *FIBDatabase() const override { return const_cast<TFIBDatabase *>(this); }

private:
    void ReadFacts();
    void NotifyClosing();
    QByteArray AttachParameters() const;

    isc_db_handle m_handle = 0;
    TFIBClientLibrary *m_client = nullptr;
    QList<TFIBDatabaseClient *> m_clients;
    bool m_isFirebird = false;
    int m_serverMajor = 0, m_serverMinor = 0;
    QString m_serverVersion;
    int m_odsMajor = 0, m_odsMinor = 0;
    int m_dbDialect = 0;
    int m_charSet = 0;
    bool m_lastOpenFoundNoFile = false;
};

class TpFIBDatabase : public TFIBDatabase
{
public:
    using TFIBDatabase::TFIBDatabase;
};

enum TTPBMode { tpbReadCommitted, tpbRepeatableRead, tpbDefault };
enum TTransactionAction { TARollback, TARollbackRetaining, TACommit, TACommitRetaining };

class TFIBTransaction : public QObject, public TFIBDatabaseClient
{
public:
    explicit TFIBTransaction(QObject *owner = nullptr);
    ~TFIBTransaction() override;

    TFIBDatabase *DefaultDatabase() const { return m_database; }
    void SetDefaultDatabase(TFIBDatabase *database);
    TTPBMode TPBMode = tpbReadCommitted;
    // The parameter list; rebuilt from TPBMode at each start unless the mode is the free one.
    QStringList TRParams;
    TTransactionAction TimeoutAction = TARollback;
    int Timeout = 0;
    // Every write statement that succeeds (insert, update, delete, procedure call, a dataset's post) is
    // made durable at once by a retaining commit, so that other connections see it.
    bool CommitRetainingAfterWrite = false;

    virtual void StartTransaction();
    virtual void Commit();
    virtual void CommitRetaining();
    virtual void Rollback();
    virtual void RollbackRetaining();

    bool Active() const { return m_handle != 0; }
    bool InTransaction() const { return Active(); }
    isc_tr_handle *Handle() { return &m_handle; }
    // Raises "%s :Transaction is not active." when inactive.
    void CheckInTransaction() const;

    void AddClient(TFIBDatabaseClient *client);
    void RemoveClient(TFIBDatabaseClient *client);

    TFIBDatabase *FIBDatabase() const override { return m_database; }
    void DatabaseClosing() override;

    // The parameter block for a list of "isc_tpb_" names, with or without that prefix.
    static QByteArray BuildTPB(const QStringList &params);

protected:
    void EndTransaction(TTransactionAction action);

private:
    TFIBDatabase *m_database = nullptr;
    isc_tr_handle m_handle = 0;
    QList<TFIBDatabaseClient *> m_clients;
};

class TpFIBTransaction : public TFIBTransaction
{
public:
    using TFIBTransaction::TFIBTransaction;
    // Starting an active transaction is harmless here.
    void StartTransaction() override;
};
