#pragma once
// The rights of the logged-in role on a grid, kept in ACTIONS under the key "<form>.<frame>", and the
// registration of a grid in that catalogue.

#include <QString>
#include <QVariant>

class TpFIBQuery;

class TGridRights
{
public:
    // Levels a right must be above: 1 viewing, 2 changing, 3 adding and deleting.
    enum Level { View = 1, Change = 2, Full = 3 };

    // Calls go through the caller's query.
    explicit TGridRights(TpFIBQuery &query) : m_query(query) {}

    // The ID of the key in the data module's spActionsOpen; reopened once when the key is not there,
    // since a grid may have registered a moment ago. Null when it is not there either.
    QVariant FindActionId(const QString &key);
    // Whether spGetRights gives the role a right above `level` on the action; false for a null action.
    bool HasRight(qint32 roleId, const QVariant &actionId, int level);
    // Finds the key's row or inserts it, with the title as its caption.
    void Register(const QString &title, const QString &key);

private:
    QVariant LookupActionId(const QString &key);

    TpFIBQuery &m_query;
};
