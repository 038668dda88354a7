// Rights of the logged-in role on a frame, and the frame's registration in the catalogue of rights.

#include "frame_fixture.h"

#include <QToolButton>

namespace {

class GridRightsTest : public FrameTest
{
protected:
    // A new role whose right on the frame's action is `right` (1 forbidden … 4 full access).
    qint32 RoleWithRight(const QString &key, int right)
    {
        TpFIBQuery q;
        q.SetDatabase(&dm->pFIBDatabaseMain);
        q.SetTransaction(&dm->pFIBTransaction1);
        q.ExecProcedure("spRolesEmpty");
        const qint32 role = q.Fields(0).AsInteger();
        const QVariant action = Scalar("select ID from ACTIONS where TACTION = '" + key + "'");
        EXPECT_TRUE(action.isValid());
        q.ExecProcedure("spRolesActionsEdit", {QVariant(), role, action, right});
        return role;
    }

    // The frame after its first refresh through the action, for the role given.
    TGridFrame *FrameForRole(qint32 role)
    {
        MakeFrame("RightsFM", "frmRightsTest", &dm->spRolesOpen, "spRoles", "Проверка прав");
        CurrentRoleId = role;
        frame->actRefresh->Execute();
        return frame;
    }

    // Registers the frame's key under the administrator, as the first run of the window would.
    void Register()
    {
        FrameForRole(1);
        form.reset();
    }

    QString Enabled()
    {
        QString s;
        for (TAction *a : {frame->actRefresh, frame->actAdd, frame->actEdit, frame->actDel})
            s += a->isEnabled() ? '1' : '0';
        return s;
    }
};

TEST_F(GridRightsTest, ViewRightShowsDataAndAllowsNothingElse)
{
    Register();
    FrameForRole(RoleWithRight("RightsFM.frmRightsTest", 2));
    EXPECT_EQ(Enabled(), "1000");
    EXPECT_EQ(frame->GridView->RowCount(), Count("ROLES"));
    // Disabled, not hidden.
    EXPECT_TRUE(frame->actAdd->isVisible());
    EXPECT_FALSE(frame->ToolButton2->isEnabled());
}

TEST_F(GridRightsTest, ChangeRightAllowsEditOnly)
{
    Register();
    FrameForRole(RoleWithRight("RightsFM.frmRightsTest", 3));
    EXPECT_EQ(Enabled(), "1010");
}

TEST_F(GridRightsTest, FullAccessAllowsEverything)
{
    Register();
    FrameForRole(RoleWithRight("RightsFM.frmRightsTest", 4));
    EXPECT_EQ(Enabled(), "1111");
}

TEST_F(GridRightsTest, ForbiddenShowsTheFirstRefreshAndNoMore)
{
    Register();
    int fills = 0;
    FrameForRole(RoleWithRight("RightsFM.frmRightsTest", 1));
    EXPECT_EQ(Enabled(), "0000");
    EXPECT_EQ(frame->GridView->RowCount(), Count("ROLES"));
    frame->OnFillParameters = [&](TFIBDataSet *) { ++fills; };
    EXPECT_FALSE(frame->actRefresh->Execute());
    EXPECT_EQ(fills, 0);
}

TEST_F(GridRightsTest, SeededRolesGetTheirDefaultsOnANewFrame)
{
    Register();
    FrameForRole(2);
    EXPECT_EQ(Enabled(), "1010");
    FrameForRole(3);
    EXPECT_EQ(Enabled(), "1000");
    // A role without a right of its own or a default has none.
    TpFIBQuery q;
    q.SetDatabase(&dm->pFIBDatabaseMain);
    q.SetTransaction(&dm->pFIBTransaction1);
    q.ExecProcedure("spRolesEmpty");
    FrameForRole(q.Fields(0).AsInteger());
    EXPECT_EQ(Enabled(), "0000");
}

TEST_F(GridRightsTest, AnActionOnceDisabledIsNeverEnabledAgain)
{
    MakeFrame("RightsFM", "frmRightsTest", &dm->spRolesOpen, "spRoles", "Проверка прав");
    frame->actAdd->setEnabled(false);
    frame->actRefresh->Execute();
    EXPECT_EQ(Enabled(), "1011");

    const qint32 viewer = RoleWithRight("RightsFM.frmRightsTest", 2);
    CurrentRoleId = viewer;
    frame->actRefresh->Execute();
    EXPECT_EQ(Enabled(), "1000");
    CurrentRoleId = 1;
    frame->actRefresh->Execute();
    EXPECT_EQ(Enabled(), "1000");
}

TEST_F(GridRightsTest, FrameWithoutARowInTheCatalogueHasEverythingDisabled)
{
    MakeFrame("UnknownFM", "frmUnknown", &dm->spRolesOpen, "spRoles", "Неизвестная");
    // Straight to the handler: the action list's registration does not run.
    frame->actRefreshExecute(nullptr);
    EXPECT_EQ(Enabled(), "0000");
    EXPECT_EQ(Count("ACTIONS where TACTION = 'UnknownFM.frmUnknown'"), 0);
    EXPECT_EQ(frame->GridView->RowCount(), 3);
}

TEST_F(GridRightsTest, RightsOffLeavesTheActionsAlone)
{
    MakeFrame("UnknownFM", "frmUnknown", &dm->spRolesOpen, "spRoles");
    frame->RightsOff = true;
    frame->actRefreshExecute(nullptr);
    EXPECT_EQ(Enabled(), "1111");
}

TEST_F(GridRightsTest, FrameOutsideAnyFormChecksNoRights)
{
    TGridFrame lone(nullptr, "frmLone");
    lone.DS->SetDataSet(&dm->spRolesOpen);
    lone.actRefresh->Execute();
    EXPECT_TRUE(lone.actAdd->isEnabled());
    EXPECT_TRUE(dm->spRolesOpen.Active());
    EXPECT_GT(lone.GridView->RowCount(), 0);
    EXPECT_EQ(Count("ACTIONS where TACTION like '%frmLone'"), 0);
}

TEST_F(GridRightsTest, NewFrameRegistersItselfUnderItsTitle)
{
    const int before = Count("ACTIONS");
    MakeFrame("NewListFM", "frmNewList", &dm->spRolesOpen, "spRoles", "Новый список");
    frame->actRefresh->Execute();
    EXPECT_EQ(Count("ACTIONS"), before + 1);
    EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = 'NewListFM.frmNewList'").toString(), "Новый список");
    // Found at once after its registration: administrator rights by default.
    EXPECT_EQ(Enabled(), "1111");

    frame->gbGrid->setTitle("Список переименован");
    frame->actRefresh->Execute();
    EXPECT_EQ(Count("ACTIONS"), before + 1);
    EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = 'NewListFM.frmNewList'").toString(),
              "Список переименован");
}

TEST_F(GridRightsTest, BlankTitleRegistersTheKeyAsTitle)
{
    MakeFrame("NewListFM", "frmBlank", &dm->spRolesOpen, "spRoles", "   ");
    frame->actRefresh->Execute();
    EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = 'NewListFM.frmBlank'").toString(),
              "NewListFM.frmBlank");
}

TEST_F(GridRightsTest, NestedFrameFindsItsFormThroughItsParents)
{
    form = std::make_unique<TfmBase>();
    form->setObjectName("NestedFM");
    auto *panel = new QWidget(form->pnlMain);
    frame = new TGridFrame(panel, "frmInner");
    EXPECT_EQ(frame->GetParentForm(), form.get());
    EXPECT_EQ(frame->RightsKey(), "NestedFM.frmInner");
}

} // namespace
