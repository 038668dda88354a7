// The cards of the users window: users with their passwords, states and roles with what they require,
// and the role's own grid of rights.

#include "admin_fixture.h"

#include "data_dm.h"
#include "roles_card_fm.h"

namespace {

class CardsTest : public AdminTest
{
protected:
    void SetUp() override
    {
        AdminTest::SetUp();
        ShowUsers();
    }
    QString StoredPassword(int id) { return Scalar(QString("select PASSWORD from USERS where ID = %1").arg(id)).toString(); }
    static QLineEdit *Edit(QWidget *card, const QString &name) { return card->findChild<QLineEdit *>(name); }
};

TEST_F(CardsTest, UsersKeepOrStoreTheirPasswordsAndNeedANameAndARoleRolesNeedANameAndTheRoleCardSavesOnlyItsOwnRights)
{
    Exec("update USERS set PASSWORD = '0cc175b9c0f1b6a831c399e269772661' where ID = 1");
    ASSERT_TRUE(dm->spUsersOpen.Locate("ID", 1));
    OnCard(users->frmUser->actEdit, {[](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Редактировать пользователя");
        EXPECT_TRUE(Edit(card, "PASSWORD_TCX")->text().isEmpty()) << "no hash is shown";
        TypeText(Edit(card, "USER_FULL_NAME_TCX"), "Иванов И.И.");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(StoredPassword(1), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(Scalar("select USER_FULL_NAME from USERS where ID = 1").toString(), "Иванов И.И.");

    ASSERT_TRUE(dm->spUsersOpen.Locate("ID", 1));
    OnCard(users->frmUser->actEdit, {[](TCustomDictFM *card) {
        EXPECT_EQ(Edit(card, "PASSWORD_TCX")->echoMode(), QLineEdit::Password);
        TypeText(Edit(card, "PASSWORD_TCX"), "Секрет1");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(StoredPassword(1),
              QString(QCryptographicHash::hash(QString("Секрет1").toUtf8(), QCryptographicHash::Md5).toHex()));
    EXPECT_TRUE(dm->spUsersOpen.FieldByName("PASSWORD")->IsNull()) << "the grid never holds a password";
    EXPECT_EQ(dm->spUsersOpen.State(), dsBrowse);

    // A new user needs a name and a role.
    const int before = Count("USERS");
    OnCard(users->frmUser->actAdd, {[](TCustomDictFM *card) { card->AdvGlowButton1->click(); },
                                    [](TCustomDictFM *card) {
                                        EXPECT_EQ(card->windowTitle(), "Новый пользователь");
                                        TypeText(Edit(card, "USERNAME_TCX"), "Кассир");
                                        card->AdvGlowButton1->click();
                                    },
                                    [](TCustomDictFM *card) {
                                        Pick(card->findChild<QWidget *>("ID_ROLE_LKP_ROLES_F_ROLENAME_TCX"), "Оператор");
                                        TypeText(Edit(card, "PASSWORD_TCX"), "123");
                                        card->AdvGlowButton1->click();
                                    }});
    EXPECT_EQ(dialogs.Texts(), QStringList({"Не указано имя пользователя!", "Не указана роль пользователя!"}));
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения пользователя");
    EXPECT_EQ(Count("USERS"), before + 1);
    EXPECT_EQ(Scalar("select ID_ROLE || ' ' || PASSWORD || ' ' || STATE from USERS where USERNAME = 'Кассир'").toString(),
              "2 " + TDataDM::MD5("123") + " 1");

    // A state needs a name; Cancel drops the row made at opening.
    dialogs.Clear();
    const int states = Count("STATES");
    OnCard(users->frmStates->actAdd, {[](TCustomDictFM *card) { card->AdvGlowButton1->click(); },
                                      [&](TCustomDictFM *card) {
                                          EXPECT_EQ(Count("STATES"), states + 1) << "the row is made at opening";
                                          card->AdvGlowButton2->click();
                                      }});
    EXPECT_EQ(dialogs.Texts(), QStringList({"Не указано наименование статуса!"}));
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения статуса");
    EXPECT_EQ(Count("STATES"), states);

    // A role needs a name; a new one brings its rows of rights.
    dialogs.Clear();
    dm->spRolesActionsOpen.FetchAll();
    const int rowsBefore = dm->spRolesActionsOpen.RecordCount();
    const int actions = Count("ACTIONS");
    QVariant roleOnCard;
    OnCard(users->frmRoles->actAdd, {[](TCustomDictFM *card) {
        TypeText(Edit(card, "TCXROLENAME"), "   ");
        card->AdvGlowButton1->click();
    },
                                     [&](TCustomDictFM *card) {
                                         EXPECT_EQ(card->windowTitle(), "Новая роль");
                                         static_cast<TRolesCardFM *>(card)->GetIntValue("ID", roleOnCard);
                                         TypeText(Edit(card, "TCXROLENAME"), "Кассир");
                                         card->AdvGlowButton1->click();
                                     }});
    EXPECT_EQ(dialogs.Texts(), QStringList({"Не указано название роли!"}));
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения роли");
    const int role = Scalar("select ID from ROLES where ROLENAME = 'Кассир'").toInt();
    ASSERT_GT(role, 3);
    EXPECT_EQ(role, roleOnCard.toInt());
    // Without a refresh, every action, the one the role card registered included, has its row for the new role.
    dm->spRolesActionsOpen.FetchAll();
    EXPECT_EQ(dm->spRolesActionsOpen.RecordCount(), rowsBefore + Count("ACTIONS") + (Count("ACTIONS") - actions) * 3);
    EXPECT_GE(RowOf(users->frmRolesActions, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", role}}), 0);

    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 3));
    OnCard(users->frmRoles->actEdit, {[](TCustomDictFM *card) {
        TypeText(Edit(card, "TCXROLENAME"), "Наблюдатель");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 3").toString(), "Наблюдатель");

    // The role card shows only its role's rights and saves them, but the administrators' spring back.
    dialogs.Clear();
    const int action = ActionId("UsersFM.frmStates");
    for (const int role : {3, 1}) {
        ASSERT_TRUE(dm->spRolesOpen.Locate("ID", role));
        OnModal<TRolesCardFM>(users->frmRoles->actEdit, {[&](TRolesCardFM *card) {
            TGridFrame *frame = card->frmRolesAction;
            EXPECT_FALSE(frame->actAdd->isVisible() || frame->actEdit->isVisible() || frame->actDel->isVisible());
            // Only this role's rows, one per action; its column is hidden.
            dm->spRolesActionsOpen2.FetchAll();
            EXPECT_EQ(dm->spRolesActionsOpen2.RecordCount(), Count("ACTIONS"));
            EXPECT_EQ(RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 4 - role}}), -1);
            EXPECT_FALSE(frame->GridView->FindColumnByFieldName(TRightsGrid::RoleColumn)->Visible());
            const int row = RowOf(frame, {{"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
            SetCell(frame, row, TRightsGrid::RightColumn, 3);
            EXPECT_EQ(ShownRight(frame, row), role == 1 ? "Полный доступ" : "Изменение");
            card->AdvGlowButton2->click();
        }});
        EXPECT_EQ(users->frmRoles->SelectedId, role);
    }
    EXPECT_EQ(RightOf(3, action), 3);
    EXPECT_EQ(RightOf(1, action), 4);
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_TRUE(dialogs.Shown[0].text.contains("Права администратора менять запрещено"));
    EXPECT_GT(ActionId("RolesCardFM.frmRolesAction"), 0) << "the card's grid registers its own action";
}

} // namespace
