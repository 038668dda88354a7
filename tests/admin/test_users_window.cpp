// The users window: its six grids, their captions and rights, and rights chosen in place.

#include "admin_fixture.h"

#include "captions_file.h"

#include <QToolButton>

namespace {

class UsersWindowTest : public AdminTest
{
protected:
    void SetUp() override
    {
        AdminTest::SetUp();
        ShowUsers();
    }
    QList<TGridFrame *> Frames() const
    {
        return {users->frmUser, users->frmRoles, users->frmStates, users->frmActions, users->frmRolesActions,
                users->frmRights};
    }
    // The row of the roles-actions grid for that role and action.
    int RightsRow(int role, int action)
    {
        return RowOf(users->frmRolesActions, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", role}, {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
    }
};

TEST_F(UsersWindowTest, SixGridsOpenUnderRussianTitlesAndOnlyTheRightIsEditedInTheGridAndSavedAtOnceButTheAdministratorsSpringsBack)
{
    ASSERT_TRUE(QFile::exists(TCaptionsFile::FileName())) << TCaptionsFile::FileName().toStdString();
    for (TGridFrame *frame : Frames()) {
        EXPECT_EQ(frame->RightsKey(), "UsersFM." + frame->objectName());
        EXPECT_GT(frame->GridView->RowCount(), 0) << frame->objectName().toStdString();
        // Hidden columns can be shown from the header's menu: they get titles too.
        ExpectRussianTitles(frame);
        if (frame == users->frmRoles)
            continue; // a hand-laid card: its boxes take the grid's titles
        frame->OnCreateCard();
        TCustomDictFM *card = frame->CardForm;
        ASSERT_NE(card, nullptr);
        OnCard([card] { card->ShowModal(); }, {[](TCustomDictFM *card) {
            EXPECT_FALSE(LabelTexts(card).isEmpty()) << card->objectName().toStdString();
            EXPECT_EQ(NotRussian(LabelTexts(card)), QStringList()) << card->objectName().toStdString();
            card->AdvGlowButton2->click();
        }});
        delete frame->CardForm;
        frame->CardForm = nullptr;
    }
    EXPECT_EQ(users->frmUser->GridView->FindColumnByFieldName("ID_ROLE_LKP_ROLES_F_ROLENAME")->Caption(), "Роль");

    // What the design switches off no right raises, not even after a refresh.
    users->frmStates->actRefresh->Execute();
    for (TGridFrame *frame : {users->frmStates, users->frmRights})
        EXPECT_EQ(QList<bool>({frame->actAdd->isEnabled(), frame->actEdit->isEnabled(), frame->actDel->isEnabled()}),
                  QList<bool>({true, false, false}));
    TGridFrame *rights = users->frmRolesActions;
    EXPECT_FALSE(rights->actAdd->isEnabled() || rights->actDel->isEnabled());
    EXPECT_FALSE(rights->ToolButton2->isVisibleTo(rights) || rights->ToolButton4->isVisibleTo(rights));
    EXPECT_TRUE(rights->actEdit->isEnabled() && rights->ToolButton3->isVisibleTo(rights));

    users->resize(1200, 800);
    QCoreApplication::processEvents();
    for (TGridFrame *frame : {users->frmUser, users->frmRoles, users->frmStates, users->frmActions})
        EXPECT_NEAR(frame->width(), users->pnlMain->width() / 3, 12) << frame->objectName().toStdString();
    EXPECT_GT(users->frmRolesActions->width(), users->frmRights->width());

    // Only the right is edited in the grid, and saved at once even without a row.
    TDBGridView *view = users->frmRolesActions->GridView;
    for (TGridColumn *column : view->ColumnList()) {
        const bool isRight = column->FieldName() == TRightsGrid::RightColumn;
        EXPECT_EQ(bool(view->Model()->flags(view->Model()->index(0, column->Index())) & Qt::ItemIsEditable), isRight)
            << column->FieldName().toStdString();
    }
    EXPECT_FALSE(users->frmUser->GridView->Editing()) << "other grids stay read-only";

    // Through the cell's own editor: the lookup of rights, as a user picks from it.
    const int action = ActionId("UsersFM.frmRights");
    const int row = RightsRow(2, action);
    ASSERT_GE(row, 0);
    EXPECT_EQ(ShownRight(users->frmRolesActions, row), "Изменение");
    const QModelIndex cell = view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index());
    view->setCurrentIndex(cell);
    view->edit(cell);
    ASSERT_NE(view->findChild<TLookupComboBox *>(), nullptr);
    Pick(view->findChild<TLookupComboBox *>(), "Просмотр");
    Settle();
    EXPECT_EQ(RightOf(2, action), 2);
    EXPECT_EQ(dm->spRolesActionsOpen.State(), dsBrowse);
    EXPECT_EQ(ShownRight(users->frmRolesActions, row), "Просмотр");
    EXPECT_EQ(view->FocusedRowIndex(), row);

    // A role with no rows lives by the defaults until a right is saved.
    Exec("insert into ROLES (ROLENAME) values ('Кассир')");
    const int role = Scalar("select ID from ROLES where ROLENAME = 'Кассир'").toInt();
    users->frmRolesActions->actRefresh->Execute();
    const int fresh = RightsRow(role, ActionId("UsersFM.frmUser"));
    ASSERT_GE(fresh, 0);
    SetCell(users->frmRolesActions, fresh, TRightsGrid::RightColumn, 3);
    EXPECT_EQ(RightOf(role, ActionId("UsersFM.frmUser")), 3);
    EXPECT_EQ(ShownRight(users->frmRolesActions, fresh), "Изменение");

    // The administrators' right springs back with its message.
    const int admins = RightsRow(1, ActionId("UsersFM.frmUser"));
    ASSERT_GE(admins, 0);
    SetCell(users->frmRolesActions, admins, TRightsGrid::RightColumn, 1);
    ASSERT_EQ(dialogs.Shown.size(), 1) << "its message, and nothing before it";
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_TRUE(dialogs.Shown[0].text.contains("Права администратора менять запрещено")) << dialogs.Shown[0].text.toStdString();
    EXPECT_EQ(ShownRight(users->frmRolesActions, admins), "Полный доступ");
    EXPECT_EQ(dm->spRolesActionsOpen.State(), dsBrowse);
    EXPECT_EQ(RightOf(1, ActionId("UsersFM.frmUser")), 4);
    // The window goes on working: the next change of another role is saved.
    SetCell(users->frmRolesActions, RightsRow(3, ActionId("UsersFM.frmUser")), TRightsGrid::RightColumn, 1);
    EXPECT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(RightOf(3, ActionId("UsersFM.frmUser")), 1);
}

} // namespace
