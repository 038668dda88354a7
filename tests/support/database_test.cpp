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

QString DeployedDatabaseTest::Rows(const QString &sql)
{
    auto q = db.NewQuery();
    QStringList rows;
    try {
        db.Tr().StartTransaction();
        q->SetSQLText(sql.startsWith(QLatin1String("sp")) ? QStringLiteral("execute procedure ") + sql : sql);
        q->ExecQuery();
        const bool select = q->StatementType() == SQLSelect;
        while (q->Fields().Count() > 0 && (select ? q->Next() : rows.isEmpty())) {
            QStringList values;
            for (int f = 0; f < q->Fields().Count(); ++f) {
                const QVariant v = q->Fields(f).AsVariant();
                const int type = v.metaType().id();
                if (v.isNull())
                    values << QStringLiteral("null");
                else if (type == QMetaType::Double || type == QMetaType::Float || type == qMetaTypeId<TFIBCurrency>())
                    values << QString::number(q->Fields(f).AsDouble(), 'g', 7);
                else if (type == QMetaType::QDateTime)
                    values << v.toDateTime().toString(v.toDateTime().time().msecsSinceStartOfDay() ? "yyyy-MM-dd hh:mm"
                                                                                                  : "yyyy-MM-dd");
                else
                    values << v.toString().trimmed();
            }
            rows << values.join(QLatin1Char('|'));
        }
    } catch (const EDatabaseError &e) {
        return e.Message().trimmed();
    }
    return rows.join(QStringLiteral("; "));
}

void DeployedDatabaseTest::Expect(const QList<Step> &steps)
{
    for (const Step &step : steps) {
        const QString result = Rows(step.sql);
        if (step.expected.startsWith(QLatin1Char('~')))
            EXPECT_TRUE(result.contains(step.expected.mid(1), Qt::CaseInsensitive))
                << step.sql.toStdString() << "\n" << result.toStdString();
        else
            EXPECT_EQ(result, step.expected) << step.sql.toStdString();
    }
}

void DeployedDatabaseTest::Fill(const QString &table, const QStringList &rows)
{
    for (const QString &row : rows)
        Expect({{QStringLiteral("insert into %1 values (%2)").arg(table, row)}});
}

QString DeployedDatabaseTest::Counts()
{
    return Rows(QStringLiteral(
        "execute block returns (T varchar(80)) as declare N integer; begin "
        "for select trim(RDB$RELATION_NAME) from RDB$RELATIONS where coalesce(RDB$SYSTEM_FLAG, 0) = 0 "
        "and RDB$VIEW_BLR is null order by 1 into :T do begin "
        "execute statement 'select count(*) from ' || T into :N; T = T || ':' || N; suspend; end end"));
}
