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
    db.Tr().StartTransaction();
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
