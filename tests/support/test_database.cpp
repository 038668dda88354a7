#include "test_database.h"

TestDatabase::TestDatabase(const QString &fileName)
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
    m_db->CreateDatabase();
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
