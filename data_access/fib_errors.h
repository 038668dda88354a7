#pragma once
// Exceptions of the data access layer and the process-wide handler that classifies server errors
// and cuts a database exception down to the text written for the user.

#include <QObject>
#include <QString>
#include <QStringList>
#include <exception>
#include <functional>
#include <ibase.h>

class TFIBDatabase;

// Root of every error the data layer raises; Message() is what a window shows.
class EDatabaseError : public std::exception
{
public:
    explicit EDatabaseError(const QString &message = QString()) : m_message(message) {}
    QString Message() const { return m_message; }
    virtual void SetMessage(const QString &message) { m_message = message; }
    const char *what() const noexcept override;

protected:
    QString m_message;

private:
    mutable QByteArray m_what;
};

// A silent stop of the current operation: nothing is shown to the user.
class EAbort : public std::exception
{
public:
    const char *what() const noexcept override { return "Operation aborted"; }
};

class EFIBError : public EDatabaseError
{
public:
    EFIBError(int sqlCode, const QString &sqlMessage, const QString &ibMessage, QObject *raiser);

    int SQLCode = 0;
    int IBErrorCode = 0;
    QString SQLState;
    QObject *Raiser = nullptr;

    QString RaiserName() const { return m_raiserName; }
    QString SQLMessage() const { return m_sqlMessage; }
    QString IBMessage() const { return m_ibMessage; }
    QString CustomMessage() const { return m_customMessage; }
    QString TailMessage() const { return m_tailMessage; }
    void SetRaiserName(const QString &v) { m_raiserName = v; Rebuild(); }
    void SetSQLMessage(const QString &v) { m_sqlMessage = v; Rebuild(); }
    void SetIBMessage(const QString &v) { m_ibMessage = v; Rebuild(); }
    void SetCustomMessage(const QString &v) { m_customMessage = v; Rebuild(); }
    void SetTailMessage(const QString &v) { m_tailMessage = v; Rebuild(); }

private:
    void Rebuild();
    QString m_raiserName, m_sqlMessage, m_ibMessage, m_customMessage, m_tailMessage;
};

// An error reported by the server through a status vector.
class EFIBInterBaseError : public EFIBError
{
public:
    using EFIBError::EFIBError;
};

// A condition found on the client side; never passes through the handler.
class EFIBClientError : public EFIBError
{
public:
    // The texts name their component themselves, so the raiser's name is not put before them.
    EFIBClientError(int sqlCode, const QString &message, QObject *raiser = nullptr)
        : EFIBError(sqlCode, message, QString(), nullptr)
    {
        Raiser = raiser;
    }
};

// Which parts make up EFIBError::Message: 2 server message, 4 SQL message, 8 SQL state, 16 raiser name.
int FIBErrorMessagesMask();
void SetFIBErrorMessagesMask(int mask);

// keLockConflict: the row is being changed by another connection whose change is not committed yet.
enum TKindIBError { keNoError, keException, keForeignKey, keLostConnect, keSecurity, keCheck, keUniqueViolation, keOther,
                    keLockConflict };

enum TOptionErrorHandler { oeException = 1, oeForeignKey = 2, oeLostConnect = 4, oeCheck = 8, oeUniqueViolation = 16 };

// The one handler of the process: every server error passes through it before it is raised.
class TpFibErrorHandler : public QObject
{
public:
    using ErrorEvent = std::function<void(QObject *sender, EFIBError &error, TKindIBError kind, bool &doRaise)>;

    explicit TpFibErrorHandler(QObject *owner = nullptr);
    ~TpFibErrorHandler() override;

    static TpFibErrorHandler *Instance();
    static TKindIBError KindOf(const EFIBError &error);

    int Options = oeException | oeLostConnect;
    QStringList ErrorLexems{QStringLiteral("constraint"), QStringLiteral("index"), QStringLiteral("exception"),
                            QStringLiteral("at")};
    ErrorEvent OnFIBErrorEvent;
    // What the user reads instead of the engine's text when another connection holds the row.
    static const QString LockConflictText;

    // Results of the last analysis.
    TKindIBError LastErrorKind = keNoError;
    int ExceptionNumber = 0;
    QString ExceptionName;
    QString ConstraintName;

    void DoOnErrorEvent(QObject *sender, EFIBError &error, bool &doRaise);

private:
    void CutUserException(QObject *sender, EFIBError &error);
    void FindConstraintName(const EFIBError &error);
    void HandleLostConnect(QObject *sender, const EFIBError &error);
};

// Reads the status vector into an error, passes it through the handler and raises it unless the handler
// cleared the flag. `raiser` names the component in the message and leads to its database.
void RaiseFIBError(const ISC_STATUS *status, QObject *raiser);

// The database a component works on, for the handler's questions about the server.
TFIBDatabase *DatabaseOf(QObject *component);

// The repair of a server message whose bytes were UTF-8 but were read as ANSI: back to the ANSI bytes,
// then decoded as UTF-8; an invalid sequence yields the empty string.
QString RepairUtf8Message(const QString &ansiReadMessage);
