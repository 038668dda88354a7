#include "data_module_copy.h"

#include "test_database.h"

#include <QDir>
#include <QFile>

void PrepareDataHome(const QString &dataHome)
{
    const QString deployed = DeployedTemplatePath();
    qputenv("XDG_DATA_HOME", dataHome.toLocal8Bit());
    const QString folder = dataHome + QStringLiteral("/Kelvarion/db");
    const QString path = folder + QStringLiteral("/database.fdb");
    if (!QDir().mkpath(folder) || !QFile::copy(deployed, path))
        throw EDatabaseError(QStringLiteral("cannot copy the deployed database to %1").arg(path));
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    ResetApplicationTerminate();
}

void ForgetDataHome()
{
    ResetApplicationTerminate();
    qunsetenv("XDG_DATA_HOME");
}

namespace {

void run(TDataDM &dm, TpFIBQuery &q, const QString &sql)
{
    dm.pFIBTransaction1.StartTransaction();
    q.SetDatabase(&dm.pFIBDatabaseMain);
    q.SetTransaction(&dm.pFIBTransaction1);
    q.SetSQLText(sql);
    q.ExecQuery();
}

} // namespace

void ExecIn(TDataDM &dm, const QString &sql)
{
    TpFIBQuery q;
    run(dm, q, sql);
}

QVariant ScalarIn(TDataDM &dm, const QString &sql)
{
    TpFIBQuery q;
    run(dm, q, sql);
    return q.Next() ? q.Fields(0).AsVariant() : QVariant();
}

QStringList RowsIn(TDataDM &dm, const QString &sql)
{
    TpFIBQuery q;
    run(dm, q, sql);
    QStringList rows;
    while (q.Next()) {
        QStringList columns;
        for (int i = 0; i < q.Fields().Count(); ++i)
            columns << q.Fields(i).AsVariant().toString();
        rows << columns.join(QLatin1Char('|'));
    }
    return rows;
}
