#include "database_test.h"

void InstallRepairHook(TpFibErrorHandler &handler)
{
    handler.OnFIBErrorEvent = [](QObject *sender, EFIBError &e, TKindIBError, bool &) {
        if (sender && dynamic_cast<TFIBQuery *>(sender))
            e.SetMessage(RepairUtf8Message(e.Message()));
    };
}

QString ErrorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const EDatabaseError &e) {
        return e.Message();
    }
    return QStringLiteral("<no error>");
}

DeployedDatabaseTest::DeployedDatabaseTest()
{
    InstallRepairHook(handler);
    query = db.NewQuery(QStringLiteral("Query"));
    db.Tr().StartTransaction();
}

QVariant DeployedDatabaseTest::Call(const QString &name, const QVariantList &values)
{
    db.Tr().StartTransaction();
    query->ExecProcedure(name, values);
    return query->Fields().Count() > 0 ? query->Fields(0).AsVariant() : QVariant();
}

int DeployedDatabaseTest::Insert(const QString &sql)
{
    db.Tr().StartTransaction();
    auto q = db.NewQuery();
    q->SetSQLText(sql + QStringLiteral(" returning ID"));
    q->ExecQuery();
    return q->Fields(0).AsInteger();
}

QString DeployedDatabaseTest::Refusal(const QString &sql)
{
    refusalText.clear();
    refusalCode = 0;
    try {
        db.Exec(sql);
    } catch (const EFIBError &e) {
        refusalText = e.Message().trimmed();
        refusalCode = e.SQLCode;
        return handler.ExceptionName;
    }
    return QString();
}

QList<DeployedDatabaseTest::Row> DeployedDatabaseTest::Select(const QString &sql, const QVariantMap &params,
                                                              QStringList *columns)
{
    TpFIBDataSet ds;
    ds.setObjectName(QStringLiteral("dsProc"));
    ds.SetDatabase(&db.Db());
    ds.SetTransaction(&db.Tr());
    ds.SetSelectSQL(sql);
    for (auto it = params.begin(); it != params.end(); ++it)
        ds.ParamByName(it.key()).SetValue(it.value());
    ds.Open();
    ds.FetchAll();
    for (int f = 0; columns && f < ds.FieldCount(); ++f)
        *columns << ds.Fields(f)->FieldName();
    QList<Row> rows;
    for (int r = 0; r < ds.RecordCount(); ++r) {
        Row row;
        for (int f = 0; f < ds.FieldCount(); ++f)
            row.insert(ds.Fields(f)->FieldName(), ds.RowValue(r, f));
        rows << row;
    }
    return rows;
}
