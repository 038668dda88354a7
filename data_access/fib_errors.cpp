#include "fib_errors.h"
#include "fib_database.h"
#include "fib_encoding.h"
#include "fib_library.h"

#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QStringDecoder>

namespace {

QMutex g_maskLock;
int g_mask = 30;
TpFibErrorHandler *g_handler = nullptr;

const QString kLineBreak = QStringLiteral("\r\n");

QString capitalised(QString s)
{
    if (!s.isEmpty() && s[0] >= QLatin1Char('a') && s[0] <= QLatin1Char('z'))
        s[0] = s[0].toUpper();
    return s;
}

QString withDot(QString s)
{
    if (!s.endsWith(QLatin1Char('.')))
        s += QLatin1Char('.');
    return s;
}

bool isLostConnectCode(int code)
{
    return code == 335544528 || code == 335544721 || (code >= 335544723 && code <= 335544727)
        || code == 335544741 || code == 335544856;
}

} // namespace

const char *EDatabaseError::what() const noexcept
{
    m_what = m_message.toUtf8();
    return m_what.constData();
}

int FIBErrorMessagesMask()
{
    QMutexLocker lock(&g_maskLock);
    return g_mask;
}

void SetFIBErrorMessagesMask(int mask)
{
    QMutexLocker lock(&g_maskLock);
    g_mask = mask;
}

EFIBError::EFIBError(int sqlCode, const QString &sqlMessage, const QString &ibMessage, QObject *raiser)
    : SQLCode(sqlCode), Raiser(raiser), m_sqlMessage(sqlMessage), m_ibMessage(ibMessage)
{
    if (raiser)
        m_raiserName = raiser->objectName();
    Rebuild();
}

void EFIBError::Rebuild()
{
    const int mask = FIBErrorMessagesMask();
    QString m;
    if ((mask & 16) && m_raiserName.size() > 1)
        m += m_raiserName + QLatin1Char(':') + kLineBreak;
    if (mask & 4)
        m += m_sqlMessage;
    if (mask & 2)
        m += m_ibMessage;
    m += m_customMessage;
    m += m_tailMessage;
    m_message = m;
}

QString RepairUtf8Message(const QString &ansiReadMessage)
{
    const QByteArray bytes = AnsiEncode(ansiReadMessage);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    return utf8.hasError() ? QString() : text;
}

void RaiseFIBError(const ISC_STATUS *status, QObject *raiser)
{
    TFIBClientLibrary &fb = TFIBClientLibrary::Load();
    const int mask = FIBErrorMessagesMask();

    const int sqlCode = fb.isc_sqlcode(status);
    char state[8] = {};
    fb.fb_sqlstate(state, status);

    QString sqlMessage;
    if (mask & 4) {
        char buf[1024] = {};
        fb.isc_sql_interprete(static_cast<short>(sqlCode), buf, sizeof buf);
        sqlMessage = AnsiDecode(buf, int(qstrnlen(buf, sizeof buf)));
        sqlMessage.remove(QStringLiteral("\\n"));
        sqlMessage = withDot(capitalised(sqlMessage)) + kLineBreak;
    }

    QString ibMessage;
    if ((mask & 8) && state[0])
        ibMessage = QStringLiteral("SQL error state =") + QString::fromLatin1(state) + kLineBreak;
    if (mask & 2) {
        const ISC_STATUS *cursor = status;
        QByteArray buf(20480, '\0');
        while (fb.fb_interpret(buf.data(), unsigned(buf.size()), &cursor) > 0) {
            const QString part = AnsiDecode(buf.constData(), int(qstrnlen(buf.constData(), buf.size())));
            if (part.isEmpty())
                continue;
            ibMessage += withDot(capitalised(part)) + kLineBreak;
        }
    }

    EFIBInterBaseError error(sqlCode, sqlMessage, ibMessage, raiser);
    error.SQLState = QString::fromLatin1(state);
    if (status[0] == isc_arg_gds)
        error.IBErrorCode = int(status[1]);

    bool doRaise = true;
    if (TpFibErrorHandler *handler = TpFibErrorHandler::Instance())
        handler->DoOnErrorEvent(raiser, error, doRaise);
    if (doRaise)
        throw error;
}

const QString TpFibErrorHandler::LockConflictText = QStringLiteral(
    "Запись изменена другим пользователем, и его изменение ещё не сохранено.\r\n"
    "Ваши изменения не записаны: сохраните их ещё раз чуть позже.");

TpFibErrorHandler::TpFibErrorHandler(QObject *owner) : QObject(owner)
{
    g_handler = this;
}

TpFibErrorHandler::~TpFibErrorHandler()
{
    if (g_handler == this)
        g_handler = nullptr;
}

TpFibErrorHandler *TpFibErrorHandler::Instance()
{
    return g_handler;
}

TKindIBError TpFibErrorHandler::KindOf(const EFIBError &error)
{
    if (error.SQLCode == -836)
        return keException;
    if (error.SQLCode == -530 && error.IBErrorCode == 335544466)
        return keForeignKey;
    if (isLostConnectCode(error.IBErrorCode))
        return keLostConnect;
    if (error.SQLCode == -551)
        return keSecurity;
    if (error.SQLCode == -297)
        return keCheck;
    if (error.SQLCode == -803 && (error.IBErrorCode == 335544349 || error.IBErrorCode == 335544665))
        return keUniqueViolation;
    if (error.IBErrorCode == isc_lock_conflict || error.IBErrorCode == isc_deadlock
        || error.IBErrorCode == isc_update_conflict)
        return keLockConflict;
    return keOther;
}

void TpFibErrorHandler::DoOnErrorEvent(QObject *sender, EFIBError &error, bool &doRaise)
{
    LastErrorKind = KindOf(error);
    ExceptionNumber = 0;
    ExceptionName.clear();
    ConstraintName.clear();

    switch (LastErrorKind) {
    case keException:
        if (Options & oeException)
            CutUserException(sender, error);
        break;
    case keForeignKey:
        if (Options & oeForeignKey)
            FindConstraintName(error);
        break;
    case keUniqueViolation:
        if (Options & oeUniqueViolation)
            FindConstraintName(error);
        break;
    case keCheck:
        if (Options & oeCheck)
            FindConstraintName(error);
        break;
    case keLostConnect:
        HandleLostConnect(sender, error);
        break;
    case keLockConflict:
        error.SetMessage(LockConflictText);
        break;
    default:
        break;
    }

    if (OnFIBErrorEvent)
        OnFIBErrorEvent(sender, error, LastErrorKind, doRaise);
}

void TpFibErrorHandler::CutUserException(QObject *sender, EFIBError &error)
{
    const QString exceptionLexem = ErrorLexems.value(2);
    QString message = error.Message();
    // The SQL message can hold the word too; the number follows its last occurrence.
    for (int pass = 0; pass < 2; ++pass) {
        const int p = message.toLower().indexOf(exceptionLexem);
        if (p >= 0)
            message = message.mid(p + exceptionLexem.size() + 1);
    }

    int dot = message.indexOf(QLatin1Char('.'));
    if (dot < 0) {
        error.SetMessage(message);
        return;
    }
    bool ok = false;
    const QString number = message.left(dot);
    ExceptionNumber = number.trimmed().toInt(&ok);
    if (!ok)
        throw EDatabaseError(QStringLiteral("'%1' is not a valid integer value").arg(number));
    message = message.mid(dot + 1).trimmed();
    ExceptionName = QStringLiteral("Unknown");

    TFIBDatabase *db = DatabaseOf(sender);
    if (db && db->IsFirebirdConnect() && db->ServerMajorVersion() >= 2) {
        dot = message.indexOf(QLatin1Char('.'));
        if (dot >= 0) {
            ExceptionName = message.left(dot);
            message = message.mid(dot + 1);
        }
    }

    const QString atLexem = ErrorLexems.value(3);
    const int p = message.toLower().indexOf(atLexem);
    if (p >= 0 && message.size() - 3 > p && message[p + atLexem.size()] == QLatin1Char(' '))
        message = message.left(p);
    error.SetMessage(message);
}

void TpFibErrorHandler::FindConstraintName(const EFIBError &error)
{
    // The name would select a user message from a table; this program keeps none, so the text stays whole.
    const QStringList lines = error.Message().split(QRegularExpression(QStringLiteral("[\r\n]+")), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QString first = line.trimmed().section(QLatin1Char(' '), 0, 0).toLower();
        if (first != ErrorLexems.value(0) && first != ErrorLexems.value(1))
            continue;
        const int open = line.indexOf(QLatin1Char('"'));
        const int close = open >= 0 ? line.indexOf(QLatin1Char('"'), open + 1) : -1;
        if (close > open) {
            ConstraintName = line.mid(open + 1, close - open - 1);
            if (ConstraintName.endsWith(QLatin1Char('.')))
                ConstraintName.chop(1);
            return;
        }
    }
}

void TpFibErrorHandler::HandleLostConnect(QObject *sender, const EFIBError &error)
{
    // An attach that failed had no connection to lose; whoever attached reads the error itself.
    if (auto *db = dynamic_cast<TFIBDatabase *>(sender); db && !db->Connected())
        return;
    if (error.IBErrorCode == 335544528)
        if (TFIBDatabase *db = DatabaseOf(sender))
            db->MarkConnectionLost();
    if (!(Options & oeLostConnect))
        return;
    bool stop = false;
    for (TFIBDatabase *db : TFIBDatabase::AllDatabases())
        db->DoConnectionLost(stop);
    if (!stop)
        throw EAbort();
}
