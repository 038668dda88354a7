// Rights of the logged-in role on a frame, and the frame's registration in the catalogue of rights.

#include "frame_fixture.h"

#include <QToolButton>

namespace {

class GridRightsTest : public FrameTest
{
protected:
    qint32 NewRole()
    {
        dm->Query.ExecProcedure("spRolesEmpty");
        return dm->Query.Fields(0).AsInteger();
    }

    // A new role whose right on the test frame is `right` (1 forbidden … 4 full access).
    qint32 RoleWithRight(int right)
    {
        const qint32 role = NewRole();
        const QVariant action = Scalar("select ID from ACTIONS where TACTION = 'RightsFM.frmRightsTest'");
        EXPECT_TRUE(action.isValid());
        dm->Query.ExecProcedure("spRolesActionsEdit", {QVariant(), role, action, right});
        return role;
    }

    // A new test frame after its first refresh, for the role given; the first one registers the frame.
    void FrameForRole(qint32 role)
    {
        MakeFrame("RightsFM", "frmRightsTest", &dm->spRolesOpen, "spRoles", "Проверка прав");
        CurrentRoleId = role;
        frame->actRefresh->Execute();
    }

    // Refresh, add, edit, delete: 1 enabled, 0 not.
    QString Enabled()
    {
        QString s;
        for (TAction *a : {frame->actRefresh, frame->actAdd, frame->actEdit, frame->actDel})
            s += a->isEnabled() ? '1' : '0';
        return s;
    }
};

TEST_F(GridRightsTest, EachRightEnablesItsActionsADisabledOneStaysSoAndFramesRegisterInTheCatalogue)
{
    FrameForRole(1);
    // Seeded roles with their defaults on a new frame, a role with neither a right nor a default, and new
    // roles with each right, forbidden last.
    const struct { qint32 role; const char *enabled; } table[] = {
        {2, "1010"}, {3, "1000"}, {NewRole(), "0000"}, {RoleWithRight(2), "1000"}, {RoleWithRight(3), "1010"},
        {RoleWithRight(4), "1111"}, {RoleWithRight(1), "0000"}};
    for (const auto &row : table) {
        FrameForRole(row.role);
        EXPECT_EQ(Enabled(), row.enabled) << "role " << row.role;
        // Even without the right to view, the first refresh shows the rows.
        EXPECT_EQ(frame->GridView->RowCount(), Count("ROLES"));
    }
    // Disabled, not hidden.
    EXPECT_TRUE(frame->actAdd->isVisible());
    EXPECT_FALSE(frame->ToolButton2->isEnabled());
    // Forbidden: no refresh after the first.
    int fills = 0;
    frame->OnFillParameters = [&](TFIBDataSet *) { ++fills; };
    EXPECT_FALSE(frame->actRefresh->Execute());
    EXPECT_EQ(fills, 0);

    // An action once disabled stays so, whatever the role.
    CurrentRoleId = 1;
    MakeFrame("RightsFM", "frmRightsTest", &dm->spRolesOpen, "spRoles", "Проверка прав");
    frame->actAdd->setEnabled(false);
    frame->actRefresh->Execute();
    EXPECT_EQ(Enabled(), "1011");
    for (const qint32 role : {RoleWithRight(2), 1}) {
        CurrentRoleId = role;
        frame->actRefresh->Execute();
        EXPECT_EQ(Enabled(), "1000") << role;
    }

    // Straight to the handler: the action list's registration does not run.
    MakeFrame("UnknownFM", "frmUnknown", &dm->spRolesOpen, "spRoles")->actRefreshExecute(nullptr);
    EXPECT_EQ(Enabled(), "0000");
    EXPECT_EQ(frame->GridView->RowCount(), Count("ROLES"));
    MakeFrame("UnknownFM", "frmUnknown", &dm->spRolesOpen, "spRoles")->RightsOff = true;
    frame->actRefreshExecute(nullptr);
    EXPECT_EQ(Enabled(), "1111");
    EXPECT_EQ(Count("ACTIONS where TACTION = 'UnknownFM.frmUnknown'"), 0);

    TGridFrame lone(nullptr, "frmLone");
    lone.DS->SetDataSet(&dm->spRolesOpen);
    lone.actRefresh->Execute();
    EXPECT_TRUE(lone.actAdd->isEnabled());
    EXPECT_GT(lone.GridView->RowCount(), 0);
    EXPECT_EQ(Count("ACTIONS where TACTION like '%frmLone'"), 0);

    // A new frame registers itself under its title.
    const int before = Count("ACTIONS");
    const QString title = "select ACTNAME from ACTIONS where TACTION = 'NewListFM.frmNewList'";
    MakeFrame("NewListFM", "frmNewList", &dm->spRolesOpen, "spRoles", "Новый список")->actRefresh->Execute();
    EXPECT_EQ(Count("ACTIONS"), before + 1);
    EXPECT_EQ(Scalar(title).toString(), "Новый список");
    // Found at once after its registration: the administrator's rights by default.
    EXPECT_EQ(Enabled(), "1111");
    frame->gbGrid->setTitle("Список переименован");
    frame->actRefresh->Execute();
    EXPECT_EQ(Count("ACTIONS"), before + 1);
    EXPECT_EQ(Scalar(title).toString(), "Список переименован");

    // A blank title registers the key; a frame without a dataset still registers.
    MakeFrame("NewListFM", "frmBlank", nullptr, "spRoles", "   ")->actRefresh->Execute();
    EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = 'NewListFM.frmBlank'").toString(),
              "NewListFM.frmBlank");
    EXPECT_TRUE(dialogs.Shown.isEmpty());
    EXPECT_EQ(frame->GridView->ColumnCount(), 0);

    // A frame nested deeper finds its form through its parents.
    auto *panel = new QWidget(form->pnlMain);
    auto *inner = new TGridFrame(panel, "frmInner");
    EXPECT_EQ(inner->RightsKey(), "NewListFM.frmInner");
}

} // namespace
