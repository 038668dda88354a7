#include "rights_grid.h"

#include "app_exception.h"
#include "dialogs.h"
#include "fib_errors.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"

const QString TRightsGrid::RoleColumn = QStringLiteral("ID_ROLE_LKP_ROLES_F_ROLENAME");
const QString TRightsGrid::RoleNameColumn = QStringLiteral("SYS_ROLENAME");
const QString TRightsGrid::ActionColumn = QStringLiteral("ID_ACTION_LKP_ACTIONS_F_ACTNAME");
const QString TRightsGrid::RightColumn = QStringLiteral("ID_RIGHT_LKP_RIGHTS_F_RIGHTNAME");

namespace {

// The value of a column in the focused row; Null when the view has no such column.
QVariant columnValue(TDBGridView *view, const QString &fieldName)
{
    TGridColumn *column = view->FindColumnByFieldName(fieldName);
    TFIBDataSet *ds = view->DataSet();
    if (!column || !ds)
        return QVariant();
    TFIBField *field = ds->FindField(column->FieldName());
    return field ? field->Value() : QVariant();
}

} // namespace

void TRightsGrid::AllowRightEditing() const
{
    m_frame->GridView->SetEditing(true);
    if (TGridColumn *right = m_frame->GridView->FindColumnByFieldName(RightColumn))
        right->SetEditable(true);
}

void TRightsGrid::SaveRight() const
{
    try {
        TFIBDataSet *ds = m_frame->DS->DataSet();
        if (!ds)
            throw EDatabaseError(QStringLiteral("Dataset not assigned"));
        if (ds->State() == dsEdit || ds->State() == dsInsert)
            ds->Post();
        const QVariant id = ds->FieldByName(QStringLiteral("ID"))->Value();
        TDBGridView *view = m_frame->GridView;
        const QVariant role = view->FindColumnByFieldName(RoleColumn) ? columnValue(view, RoleColumn)
                                                                       : columnValue(view, RoleNameColumn);
        const int action = columnValue(view, ActionColumn).toInt();
        const int right = columnValue(view, RightColumn).toInt();
        if (m_frame->Query->Transaction() && !m_frame->Query->Transaction()->Active())
            m_frame->Query->Transaction()->StartTransaction();
        m_frame->Query->ExecProcedure(QStringLiteral("spRolesActionsEdit"), {id, role, action, right});
        m_frame->actRefresh->Execute();
    } catch (const std::exception &error) {
        // The refresh brings back what is stored: a refused right springs back in the grid.
        try {
            m_frame->actRefresh->Execute();
        } catch (...) {
            HandleCurrentException();
        }
        Dialogs::Current().Show(Dialogs::Error, ExceptionMessage(error));
    }
}
