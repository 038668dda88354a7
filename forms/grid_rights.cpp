#include "grid_rights.h"

#include "data_dm.h"
#include "fib_query.h"

namespace {

void startTransaction(TpFIBQuery &query)
{
    if (query.Transaction() && !query.Transaction()->Active())
        query.Transaction()->StartTransaction();
}

} // namespace

QVariant TGridRights::LookupActionId(const QString &key)
{
    TFIBDataSet &actions = DataDM->spActionsOpen;
    actions.FetchAll();
    TFIBField *id = actions.FieldByName(QStringLiteral("ID"));
    TFIBField *taction = actions.FieldByName(QStringLiteral("SYS_TACTION"));
    // A look-up by value: the cursor of the shared dataset stays where it is.
    for (int row = 0; row < actions.RecordCount(); ++row)
        if (actions.RowValue(row, taction->Index()).toString() == key)
            return actions.RowValue(row, id->Index());
    return QVariant();
}

QVariant TGridRights::FindActionId(const QString &key)
{
    TFIBDataSet &actions = DataDM->spActionsOpen;
    if (!actions.Active())
        actions.Open();
    QVariant id = LookupActionId(key);
    if (!id.isValid() || id.isNull()) {
        actions.Close();
        actions.Open();
        id = LookupActionId(key);
    }
    return id;
}

bool TGridRights::HasRight(qint32 roleId, const QVariant &actionId, int level)
{
    if (!actionId.isValid() || actionId.isNull())
        return false;
    startTransaction(m_query);
    m_query.ExecProcedure(QStringLiteral("spGetRights"), {roleId, actionId});
    const QVariant right = m_query.Fields(0).AsVariant();
    // A null right compares as not greater.
    return right.isValid() && !right.isNull() && right.toInt() > level;
}

void TGridRights::Register(const QString &title, const QString &key)
{
    startTransaction(m_query);
    m_query.ExecProcedure(QStringLiteral("spActionsEdit"), {QVariant(), title, key});
}
