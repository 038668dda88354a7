#include "test_database.h"

#include "data_dm.h"
#include "scripted_dialogs.h"

#include <QFile>
#include <QMutex>
#include <cstdlib>

TestDatabase::TestDatabase(const QString &fileName, const QString &copyOf)
{
    m_path = m_dir.filePath(fileName);
    m_db = std::make_unique<TpFIBDatabase>();
    m_db->setObjectName(QStringLiteral("pFIBDatabaseMain"));
    m_db->SQLDialect = 1;
    m_db->DBName = m_path;
    m_tr = std::make_unique<TpFIBTransaction>();
    m_tr->setObjectName(QStringLiteral("pFIBTransaction1"));
    m_tr->SetDefaultDatabase(m_db.get());
    m_db->DefaultTransaction = m_tr.get();
    if (copyOf.isEmpty()) {
        m_db->CreateDatabase();
        return;
    }
    if (!QFile::copy(copyOf, m_path))
        throw EDatabaseError(QStringLiteral("cannot copy %1").arg(copyOf));
    QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner);
    m_db->Open();
}

void TestDatabase::CommitAndRestart()
{
    if (m_tr->Active())
        m_tr->Commit();
    m_tr->StartTransaction();
}

TestDatabase::~TestDatabase()
{
    try {
        if (m_tr->Active())
            m_tr->Rollback();
        m_db->Close();
    } catch (const std::exception &) {
    }
    m_tr.reset();
    m_db.reset();
}

std::unique_ptr<TpFIBQuery> TestDatabase::NewQuery(const QString &name)
{
    auto q = std::make_unique<TpFIBQuery>();
    q->setObjectName(name);
    q->SetDatabase(m_db.get());
    q->SetTransaction(m_tr.get());
    return q;
}

void TestDatabase::Exec(const QString &sql)
{
    m_tr->StartTransaction();
    auto q = NewQuery();
    q->SetSQLText(sql);
    q->ExecQuery();
    if (q->IsDDL())
        m_tr->Commit();
}

QVariant TestDatabase::Scalar(const QString &sql)
{
    m_tr->StartTransaction();
    auto q = NewQuery();
    q->SetSQLText(sql);
    q->ExecQuery();
    if (!q->Next())
        return QVariant();
    return q->Fields(0).AsVariant();
}

QString DeployedTemplatePath()
{
    static QTemporaryDir home;
    static QString path;
    if (!path.isEmpty())
        return path;
    const QByteArray savedHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", home.path().toLocal8Bit());
    ScriptedDialogs dialogs;
    QString error;
    {
        TDataDM dm(nullptr, {QStringLiteral("kelvarion")});
        if (!dm.IsNewDatabase() || !dialogs.Texts().isEmpty())
            error = dm.LastScriptError() + dialogs.Texts().join(QLatin1Char('\n'));
        path = dm.DbFileName;
        dm.pFIBTransaction1.StartTransaction();
    } // the data module commits and disconnects here
    ResetApplicationTerminate();
    if (savedHome.isEmpty())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", savedHome);
    if (!error.isEmpty()) {
        path.clear();
        throw EDatabaseError(QStringLiteral("deployment failed: ") + error);
    }
    return path;
}
