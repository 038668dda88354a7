// The users window: its six grids, their settings and captions, and rights chosen in place.

#include "admin_fixture.h"

#include "captions_file.h"
#include "rights_grid.h"
#include "roles_card_fm.h"

#include <QGroupBox>
#include <QRegularExpression>
#include <QSettings>
#include <QToolButton>

namespace {

class UsersWindowTest : public AdminTest
{
protected:
    QList<TGridFrame *> Frames() const
    {
        return {users->frmUser, users->frmRoles, users->frmStates, users->frmActions, users->frmRolesActions,
                users->frmRights};
    }
};

TEST_F(UsersWindowTest, SixFramesWithTheirTitlesDataAndRightsKeys)
{
    ShowUsers();
    EXPECT_EQ(users->objectName(), "UsersFM");
    EXPECT_EQ(users->windowTitle(), "Пользователи и роли");
    const QStringList titles = {"Пользователи", "Роли", "Статус пользователя", "Действия пользователей", "Разрешения",
                                "Права пользователей"};
    const QStringList names = {"frmUser", "frmRoles", "frmStates", "frmActions", "frmRolesActions", "frmRights"};
    const QList<TFIBDataSet *> dataSets = {&dm->spUsersOpen,  &dm->spRolesOpen,        &dm->spStatesOpen,
                                           &dm->spActionsOpen, &dm->spRolesActionsOpen, &dm->spRightsOpen};
    for (int i = 0; i < Frames().size(); ++i) {
        TGridFrame *frame = Frames()[i];
        EXPECT_EQ(frame->objectName(), names[i]);
        EXPECT_EQ(frame->gbGrid->title(), titles[i]);
        EXPECT_EQ(frame->DS->DataSet(), dataSets[i]);
        EXPECT_EQ(frame->RightsKey(), "UsersFM." + names[i]);
        EXPECT_TRUE(dataSets[i]->Active()) << names[i].toStdString();
        EXPECT_GT(frame->GridView->RowCount(), 0) << names[i].toStdString();
        EXPECT_TRUE(frame->isVisibleTo(users.get()));
    }
    EXPECT_EQ(users->frmUser->ProcPrefix, "spUsers");
    EXPECT_EQ(users->frmUser->AddCaption, "Новый пользователь");
    EXPECT_EQ(users->frmUser->EditCaption, "Редактировать пользователя");
    EXPECT_EQ(users->frmRoles->DelPrompt, "Вы уверены, что хотите удалить выбранную роль?");
    EXPECT_EQ(users->frmRights->AddCaption, "Новое наименование");
    // The catalogue row of each frame carries its title.
    EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = 'UsersFM.frmRolesActions'").toString(), "Разрешения");
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(UsersWindowTest, DesignSwitchesOffWhatRightsCanNeverRaise)
{
    ShowUsers();
    for (TGridFrame *frame : {users->frmStates, users->frmRights}) {
        EXPECT_TRUE(frame->actAdd->isEnabled());
        EXPECT_FALSE(frame->actEdit->isEnabled());
        EXPECT_FALSE(frame->actDel->isEnabled());
    }
    TGridFrame *rights = users->frmRolesActions;
    EXPECT_FALSE(rights->actAdd->isEnabled());
    EXPECT_FALSE(rights->actDel->isEnabled());
    EXPECT_FALSE(rights->actAdd->isVisible());
    EXPECT_FALSE(rights->actDel->isVisible());
    EXPECT_FALSE(rights->ToolButton2->isVisibleTo(rights));
    EXPECT_FALSE(rights->ToolButton4->isVisibleTo(rights));
    EXPECT_TRUE(rights->ToolButton3->isVisibleTo(rights));
    EXPECT_TRUE(rights->actEdit->isEnabled());
    // A second refresh under full rights raises none of them.
    users->frmStates->actRefresh->Execute();
    EXPECT_FALSE(users->frmStates->actEdit->isEnabled());
}

TEST_F(UsersWindowTest, EveryGridShowsRussianTitlesFromTheIniFile)
{
    ASSERT_TRUE(QFile::exists(TCaptionsFile::FileName())) << TCaptionsFile::FileName().toStdString();
    ShowUsers();
    const QRegularExpression cyrillic("[А-Яа-яЁё]");
    QSettings ini(TCaptionsFile::FileName(), QSettings::IniFormat);
    for (TGridFrame *frame : Frames()) {
        const QString section = "UsersFM." + frame->objectName();
        int visible = 0;
        for (TGridColumn *column : frame->GridView->ColumnList()) {
            // Hidden columns can be shown from the header's menu: they get titles too.
            EXPECT_TRUE(column->Caption().contains(cyrillic))
                << section.toStdString() << ": " << column->FieldName().toStdString() << " shows as "
                << column->Caption().toStdString();
            EXPECT_NE(column->Caption(), column->FieldName());
            visible += column->Visible();
        }
        EXPECT_GT(visible, 0);
        // Each key of the section names a field the procedure returns.
        ini.beginGroup(section);
        const QStringList keys = ini.childKeys();
        ini.endGroup();
        EXPECT_EQ(keys.size(), frame->GridView->ColumnCount()) << section.toStdString();
        for (const QString &key : keys)
            EXPECT_NE(frame->GridView->FindColumnByFieldName(key), nullptr) << section.toStdString() << ": " << key.toStdString();
    }
    EXPECT_EQ(users->frmUser->GridView->FindColumnByFieldName("ID_ROLE_LKP_ROLES_F_ROLENAME")->Caption(), "Роль");
}

TEST_F(UsersWindowTest, GeneratedCardsShowRussianLabels)
{
    ShowUsers();
    const QRegularExpression cyrillic("[А-Яа-яЁё]");
    for (TGridFrame *frame : Frames()) {
        if (frame == users->frmRoles)
            continue; // a hand-laid card: its boxes take the grid's titles
        frame->OnCreateCard();
        ASSERT_NE(frame->CardForm, nullptr);
        TCustomDictFM *card = frame->CardForm;
        QStringList labels;
        ModalDriver driver;
        driver.Then([&](QWidget *) {
            labels = LabelTexts(card);
            card->AdvGlowButton2->click();
        });
        card->ShowModal();
        EXPECT_FALSE(labels.isEmpty()) << card->objectName().toStdString();
        for (const QString &label : labels)
            EXPECT_TRUE(label.contains(cyrillic)) << card->objectName().toStdString() << ": " << label.toStdString();
        delete frame->CardForm;
        frame->CardForm = nullptr;
    }
}

TEST_F(UsersWindowTest, OnlyTheRightIsEditableInTheGridOfPermissions)
{
    ShowUsers();
    TDBGridView *view = users->frmRolesActions->GridView;
    EXPECT_TRUE(view->Editing());
    EXPECT_TRUE(view->CellSelect());
    for (TGridColumn *column : view->ColumnList()) {
        const bool isRight = column->FieldName() == TRightsGrid::RightColumn;
        EXPECT_EQ(column->Editable(), isRight) << column->FieldName().toStdString();
        EXPECT_EQ(bool(view->Model()->flags(view->Model()->index(0, column->Index())) & Qt::ItemIsEditable), isRight);
    }
    EXPECT_EQ(view->FindColumnByFieldName(TRightsGrid::RoleColumn)->Tag(), 1);
    EXPECT_EQ(view->FindColumnByFieldName(TRightsGrid::ActionColumn)->Tag(), 1);
    EXPECT_EQ(view->FindColumnByFieldName(TRightsGrid::RightColumn)->Tag(), 0);
    // Other grids stay read-only.
    EXPECT_FALSE(users->frmUser->GridView->Editing());
}

TEST_F(UsersWindowTest, ARightChosenInTheGridIsSavedAtOnce)
{
    ShowUsers();
    TGridFrame *frame = users->frmRolesActions;
    const int action = ActionId("UsersFM.frmRights");
    const int row = RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 2}, {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
    ASSERT_GE(row, 0);
    EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Изменение");

    // Through the cell's own editor: the lookup of rights, as a user picks from it.
    TDBGridView *view = frame->GridView;
    const QModelIndex cell = view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index());
    view->setCurrentIndex(cell);
    view->edit(cell);
    auto *editor = view->findChild<TLookupComboBox *>();
    ASSERT_NE(editor, nullptr);
    Pick(editor, "Просмотр");
    Settle();

    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 2 and ID_ACTION = %1").arg(action)).toInt(), 2);
    EXPECT_EQ(dm->spRolesActionsOpen.State(), dsBrowse);
    EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Просмотр");
    EXPECT_EQ(view->FocusedRowIndex(), row);
}

TEST_F(UsersWindowTest, ARightWithoutARowGetsOne)
{
    // A role with no rows at all lives by the defaults until a right is saved.
    Exec("insert into ROLES (ROLENAME) values ('Кассир')");
    const int role = Scalar("select ID from ROLES where ROLENAME = 'Кассир'").toInt();
    ShowUsers();
    TGridFrame *frame = users->frmRolesActions;
    const int action = ActionId("UsersFM.frmUser");
    const int row = RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", role}, {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
    ASSERT_GE(row, 0);
    TDBGridView *view = frame->GridView;
    ASSERT_TRUE(view->Model()->setData(
        view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index()), 3, Qt::EditRole));
    Settle();
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = %1 and ID_ACTION = %2").arg(role).arg(action))
                  .toInt(),
              3);
    EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Изменение");
}

TEST_F(UsersWindowTest, TheAdministratorsRightSpringsBackWithItsMessage)
{
    ShowUsers();
    TGridFrame *frame = users->frmRolesActions;
    const int action = ActionId("UsersFM.frmUser");
    const int row = RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 1}, {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
    ASSERT_GE(row, 0);
    TDBGridView *view = frame->GridView;
    const QModelIndex cell = view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index());
    ASSERT_TRUE(view->Model()->setData(cell, 1, Qt::EditRole));
    EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Запрещено");
    Settle();

    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_TRUE(dialogs.Shown[0].text.contains("Права администратора менять запрещено"))
        << dialogs.Shown[0].text.toStdString();
    EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Полный доступ");
    EXPECT_EQ(dm->spRolesActionsOpen.State(), dsBrowse);
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 1 and ID_ACTION = %1").arg(action)).toInt(), 4);
    // The window goes on working: the next change of another role is saved.
    const int other = RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 3}, {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
    ASSERT_TRUE(view->Model()->setData(
        view->Model()->index(other, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index()), 1, Qt::EditRole));
    Settle();
    EXPECT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 3 and ID_ACTION = %1").arg(action)).toInt(), 1);
}

TEST_F(UsersWindowTest, ANewRoleBringsItsRowsOfRightsWithoutARefresh)
{
    ShowUsers();
    dm->spRolesActionsOpen.FetchAll();
    const int rowsBefore = dm->spRolesActionsOpen.RecordCount();
    const int actions = Count("ACTIONS");
    ModalDriver driver;
    int roleOnCard = 0;
    driver.Then([&](QWidget *modal) {
        auto *card = qobject_cast<TRolesCardFM *>(modal);
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->windowTitle(), "Новая роль");
        QVariant id;
        card->GetIntValue("ID", id);
        roleOnCard = id.toInt();
        TypeText(card->findChild<QWidget *>("TCXROLENAME"), "Кассир");
        card->AdvGlowButton1->click();
    });
    // The frame's add button, as the user presses it.
    users->frmRoles->ToolButton2->click();
    EXPECT_EQ(driver.Ran(), 1);
    EXPECT_TRUE(driver.Failures.isEmpty());
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    const int role = Scalar("select ID from ROLES where ROLENAME = 'Кассир'").toInt();
    ASSERT_GT(role, 3);
    EXPECT_EQ(role, roleOnCard);
    // Every action, the one the role card registered included, has its row for the new role.
    dm->spRolesActionsOpen.FetchAll();
    EXPECT_EQ(dm->spRolesActionsOpen.RecordCount(), rowsBefore + Count("ACTIONS") + (Count("ACTIONS") - actions) * 3);
    EXPECT_GE(RowOf(users->frmRolesActions, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", role}}), 0);
}

TEST_F(UsersWindowTest, EditingAUserReadsTheUsersAgain)
{
    ShowUsers();
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        auto *card = qobject_cast<TCustomDictFM *>(modal);
        ASSERT_NE(card, nullptr);
        EXPECT_EQ(card->windowTitle(), "Редактировать пользователя");
        TypeText(card->findChild<QWidget *>("PASSWORD_TCX"), "тайна");
        card->AdvGlowButton1->click();
    });
    users->frmUser->actEdit->Execute();
    EXPECT_EQ(driver.Ran(), 1);
    // The typed password is not left in the grid's row.
    EXPECT_TRUE(dm->spUsersOpen.FieldByName("PASSWORD")->IsNull());
    EXPECT_EQ(dm->spUsersOpen.State(), dsBrowse);
}

TEST_F(UsersWindowTest, EditOfARoleNotesItsId)
{
    ShowUsers();
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    ModalDriver driver;
    driver.Then([&](QWidget *modal) { static_cast<TCustomDictFM *>(modal)->AdvGlowButton2->click(); });
    users->frmRoles->actEdit->Execute();
    EXPECT_EQ(users->frmRoles->SelectedId, 3);
}

TEST_F(UsersWindowTest, TheFourListsTakeAThirdOfTheWidthEach)
{
    ShowUsers();
    users->resize(1200, 800);
    QCoreApplication::processEvents();
    const int third = users->pnlMain->width() / 3;
    for (TGridFrame *frame : {users->frmUser, users->frmRoles, users->frmStates, users->frmActions})
        EXPECT_NEAR(frame->width(), third, 12) << frame->objectName().toStdString();
    EXPECT_GT(users->frmRolesActions->width(), users->frmRights->width());
}

} // namespace
