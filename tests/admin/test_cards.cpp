// The cards of the users window: users with their passwords, states and roles with what they require,
// and the role's own grid of rights.

#include "admin_fixture.h"

#include "data_dm.h"
#include "dict_fm.h"
#include "fm_base.h"
#include "rights_grid.h"
#include "roles_card_fm.h"
#include "states_card_fm.h"
#include "user_card_fm.h"

#include <QRegularExpression>
#include <QVBoxLayout>

namespace {

class CardsTest : public AdminTest
{
protected:
    QString StoredPassword(int id) { return Scalar(QString("select PASSWORD from USERS where ID = %1").arg(id)).toString(); }

    // Runs the frame's action with one step on the card it opens.
    void OnCard(TAction *action, const std::function<void(TCustomDictFM *)> &step)
    {
        ModalDriver driver;
        driver.Then([&](QWidget *modal) {
            auto *card = qobject_cast<TCustomDictFM *>(modal);
            ASSERT_NE(card, nullptr);
            step(card);
        });
        action->Execute();
        EXPECT_EQ(driver.Ran(), 1);
        EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    }
};

TEST_F(CardsTest, AnEmptyPasswordFieldKeepsTheStoredPassword)
{
    Exec("update USERS set PASSWORD = '0cc175b9c0f1b6a831c399e269772661' where ID = 1");
    ShowUsers();
    ASSERT_TRUE(dm->spUsersOpen.Locate("ID", 1));
    OnCard(users->frmUser->actEdit, [](TCustomDictFM *card) {
        EXPECT_EQ(card->objectName(), "UserCardFM");
        EXPECT_TRUE(qobject_cast<QLineEdit *>(card->findChild<QWidget *>("PASSWORD_TCX"))->text().isEmpty());
        TypeText(card->findChild<QWidget *>("USER_FULL_NAME_TCX"), "Иванов И.И.");
        card->AdvGlowButton1->click();
    });
    EXPECT_EQ(StoredPassword(1), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(Scalar("select USER_FULL_NAME from USERS where ID = 1").toString(), "Иванов И.И.");
}

TEST_F(CardsTest, ATypedPasswordIsStoredAsLowerCaseMd5)
{
    ShowUsers();
    ASSERT_TRUE(dm->spUsersOpen.Locate("ID", 1));
    OnCard(users->frmUser->actEdit, [](TCustomDictFM *card) {
        auto *password = qobject_cast<QLineEdit *>(card->findChild<QWidget *>("PASSWORD_TCX"));
        EXPECT_EQ(password->echoMode(), QLineEdit::Password);
        TypeText(password, "Секрет1");
        card->AdvGlowButton1->click();
    });
    const QString stored = StoredPassword(1);
    EXPECT_TRUE(QRegularExpression("^[0-9a-f]{32}$").match(stored).hasMatch()) << stored.toStdString();
    EXPECT_EQ(stored, TDataDM::MD5("Секрет1"));
    EXPECT_EQ(stored, QString(QCryptographicHash::hash(QString("Секрет1").toUtf8(), QCryptographicHash::Md5).toHex()));
    // The grid never holds a password.
    EXPECT_TRUE(dm->spUsersOpen.FieldByName("PASSWORD")->IsNull());
}

TEST_F(CardsTest, ANewUserWithNameRoleAndPasswordIsSaved)
{
    ShowUsers();
    const int before = Count("USERS");
    OnCard(users->frmUser->actAdd, [this](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новый пользователь");
        TypeText(card->findChild<QWidget *>("USERNAME_TCX"), "Кассир");
        Pick(card->findChild<QWidget *>("ID_ROLE_LKP_ROLES_F_ROLENAME_TCX"), "Оператор");
        TypeText(card->findChild<QWidget *>("PASSWORD_TCX"), "123");
        card->AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Count("USERS"), before + 1);
    EXPECT_EQ(Scalar("select ID_ROLE from USERS where USERNAME = 'Кассир'").toInt(), 2);
    EXPECT_EQ(Scalar("select PASSWORD from USERS where USERNAME = 'Кассир'").toString(), TDataDM::MD5("123"));
    EXPECT_EQ(Scalar("select STATE from USERS where USERNAME = 'Кассир'").toInt(), 1);
}

TEST_F(CardsTest, ANewUserWithoutANameKeepsTheCardOpenAndCancelRemovesTheRow)
{
    ShowUsers();
    const int before = Count("USERS");
    ModalDriver driver;
    QPointer<QWidget> first, second;
    driver
        .Then([&](QWidget *modal) {
            first = modal;
            static_cast<TCustomDictFM *>(modal)->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            // Still the same card: the save was refused before it reached the database.
            second = modal;
            EXPECT_EQ(Count("USERS"), before + 1);
            EXPECT_TRUE(Scalar("select max(USERNAME) from USERS where ID = (select max(ID) from USERS)").isNull());
            static_cast<TCustomDictFM *>(modal)->AdvGlowButton2->click();
        });
    users->frmUser->actAdd->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_EQ(first, second);
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Не указано имя пользователя!");
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения пользователя");
    EXPECT_EQ(Count("USERS"), before);
}

TEST_F(CardsTest, ANewUserWithoutARoleIsRefused)
{
    ShowUsers();
    const int before = Count("USERS");
    ModalDriver driver;
    driver
        .Then([&](QWidget *modal) {
            auto *card = static_cast<TCustomDictFM *>(modal);
            TypeText(card->findChild<QWidget *>("USERNAME_TCX"), "Без роли");
            card->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            dialogs.Answer(Dialogs::ResultCancel); // typed, so cancel asks whether to save
            static_cast<TCustomDictFM *>(modal)->AdvGlowButton2->click();
        });
    users->frmUser->actAdd->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    ASSERT_GE(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Не указана роль пользователя!");
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения пользователя");
    EXPECT_EQ(Count("USERS"), before);
}

TEST_F(CardsTest, AColumnThatFlagsAnEmptyPasswordHasNoPlaceOnTheCard)
{
    TpFIBDataSet ds;
    ds.setObjectName("spUsersFlagOpen");
    ds.SetDatabase(&dm->pFIBDatabaseMain);
    ds.SetTransaction(&dm->pFIBTransaction1);
    ds.SetSelectSQL("select ID, USERNAME, cast(null as varchar(128)) as PASSWORD, 1 as PASSWORD_EMPTY_BIT from USERS");
    TfmBase form;
    form.setObjectName("FlagFM");
    auto *layout = new QVBoxLayout(form.pnlMain);
    auto *frame = new TGridFrame(form.pnlMain, "frmFlag");
    layout->addWidget(frame);
    frame->DS->SetDataSet(&ds);
    form.show();
    frame->actRefresh->Execute();
    TUserCardFM card(frame->GridView, "frmFlag", "spUsersEdit");
    ModalDriver driver;
    driver.Then([&](QWidget *) {
        EXPECT_EQ(card.findChild<QLabel *>("PASSWORD_EMPTY_BIT_LBL"), nullptr);
        QWidget *flag = card.findChild<QWidget *>("PASSWORD_EMPTY_BIT_TCX");
        ASSERT_NE(flag, nullptr);
        EXPECT_TRUE(flag->isHidden());
        EXPECT_NE(card.findChild<QLabel *>("USERNAME_LBL"), nullptr);
        card.AdvGlowButton2->click();
    });
    card.ShowModal();
    EXPECT_EQ(driver.Ran(), 1);
}

TEST_F(CardsTest, AStateNeedsAName)
{
    ShowUsers();
    const int before = Count("STATES");
    ModalDriver driver;
    driver
        .Then([&](QWidget *modal) {
            EXPECT_EQ(modal->objectName(), "StatesCardFM");
            static_cast<TCustomDictFM *>(modal)->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            auto *card = static_cast<TCustomDictFM *>(modal);
            TypeText(card->findChild<QWidget *>("STATENAME_TCX"), "В отпуске");
            card->AdvGlowButton1->click();
        });
    users->frmStates->actAdd->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Не указано наименование статуса!");
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения статуса");
    EXPECT_EQ(Count("STATES"), before + 1);
    EXPECT_EQ(Scalar("select count(*) from STATES where STATENAME = 'В отпуске'").toInt(), 1);
}

class RolesCardTest : public CardsTest
{
protected:
    void SetUp() override
    {
        CardsTest::SetUp();
        ShowUsers();
    }
    // Opens the card of a role through the window's edit.
    void OnRole(int id, const std::function<void(TRolesCardFM *)> &step)
    {
        ASSERT_TRUE(dm->spRolesOpen.Locate("ID", id));
        OnCard(users->frmRoles->actEdit, [&](TCustomDictFM *card) {
            auto *roles = qobject_cast<TRolesCardFM *>(card);
            ASSERT_NE(roles, nullptr);
            step(roles);
        });
    }
};

TEST_F(RolesCardTest, ShowsTheRoleAndItsRightsOnEveryAction)
{
    OnRole(2, [this](TRolesCardFM *card) {
        EXPECT_EQ(card->objectName(), "RolesCardFM");
        EXPECT_EQ(card->windowTitle(), "Изменить роль");
        EXPECT_EQ(card->ROLENAME->title(), "Роль");
        EXPECT_EQ(card->COMMENT->title(), "Примечание");
        EXPECT_EQ(qobject_cast<QLineEdit *>(card->findChild<QWidget *>("TCXROLENAME"))->text(), "Оператор");
        TGridFrame *frame = card->frmRolesAction;
        EXPECT_EQ(frame->gbGrid->title(), "Пользовательские действия");
        EXPECT_EQ(frame->DS->DataSet(), &dm->spRolesActionsOpen2);
        EXPECT_EQ(frame->RightsKey(), "RolesCardFM.frmRolesAction");
        for (TAction *action : {frame->actAdd, frame->actEdit, frame->actDel}) {
            EXPECT_FALSE(action->isEnabled());
            EXPECT_FALSE(action->isVisible());
        }
        EXPECT_FALSE(frame->actDblClick->isEnabled());
        EXPECT_TRUE(frame->actRefresh->isEnabled());
        // Only this role's rows, one per action; the role itself is not shown.
        dm->spRolesActionsOpen2.FetchAll();
        EXPECT_EQ(dm->spRolesActionsOpen2.RecordCount(), Count("ACTIONS"));
        EXPECT_EQ(RowOf(frame, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 1}}), -1);
        TDBGridView *view = frame->GridView;
        EXPECT_FALSE(view->FindColumnByFieldName(TRightsGrid::RoleColumn)->Visible());
        EXPECT_TRUE(view->FindColumnByFieldName(TRightsGrid::RightColumn)->Editable());
        EXPECT_FALSE(view->FindColumnByFieldName(TRightsGrid::ActionColumn)->Editable());
        EXPECT_EQ(view->FindColumnByFieldName(TRightsGrid::ActionColumn)->Caption(), "Действие");
        card->AdvGlowButton2->click();
    });
    EXPECT_GT(ActionId("RolesCardFM.frmRolesAction"), 0);
}

TEST_F(RolesCardTest, ARightChangedOnTheCardIsSavedAtOnce)
{
    const int action = ActionId("UsersFM.frmStates");
    OnRole(3, [&](TRolesCardFM *card) {
        TGridFrame *frame = card->frmRolesAction;
        const int row = RowOf(frame, {{"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
        ASSERT_GE(row, 0);
        TDBGridView *view = frame->GridView;
        ASSERT_TRUE(view->Model()->setData(
            view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index()), 4, Qt::EditRole));
        Settle();
        EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Полный доступ");
        card->AdvGlowButton2->click();
    });
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 3 and ID_ACTION = %1").arg(action)).toInt(), 4);
}

TEST_F(RolesCardTest, TheAdministratorsRightsSpringBackOnTheCardToo)
{
    const int action = ActionId("UsersFM.frmStates");
    OnRole(1, [&](TRolesCardFM *card) {
        TGridFrame *frame = card->frmRolesAction;
        const int row = RowOf(frame, {{"ID_ACTION_LKP_ACTIONS_F_ACTNAME", action}});
        ASSERT_GE(row, 0);
        TDBGridView *view = frame->GridView;
        ASSERT_TRUE(view->Model()->setData(
            view->Model()->index(row, view->FindColumnByFieldName(TRightsGrid::RightColumn)->Index()), 2, Qt::EditRole));
        Settle();
        EXPECT_EQ(Shown(frame, row, TRightsGrid::RightColumn), "Полный доступ");
        card->AdvGlowButton2->click();
    });
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_TRUE(dialogs.Shown[0].text.contains("Права администратора менять запрещено"));
    EXPECT_EQ(Scalar(QString("select ID_RIGHTS from ROLES_ACTIONS where ID_ROLE = 1 and ID_ACTION = %1").arg(action)).toInt(), 4);
}

TEST_F(RolesCardTest, ARoleNeedsAName)
{
    ModalDriver driver;
    driver
        .Then([&](QWidget *modal) {
            auto *card = static_cast<TRolesCardFM *>(modal);
            auto *name = qobject_cast<QLineEdit *>(card->findChild<QWidget *>("TCXROLENAME"));
            TypeText(name, "   ");
            card->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            dialogs.Answer(Dialogs::ResultCancel);
            static_cast<TCustomDictFM *>(modal)->AdvGlowButton2->click();
        });
    ASSERT_TRUE(dm->spRolesOpen.Locate("ID", 2));
    users->frmRoles->actEdit->Execute();
    EXPECT_EQ(driver.Ran(), 2);
    ASSERT_GE(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Не указано название роли!");
    EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка сохранения роли");
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 2").toString(), "Оператор");
}

TEST_F(RolesCardTest, ARenamedRoleIsSaved)
{
    OnRole(3, [](TRolesCardFM *card) {
        TypeText(card->findChild<QWidget *>("TCXROLENAME"), "Наблюдатель");
        card->AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Scalar("select ROLENAME from ROLES where ID = 3").toString(), "Наблюдатель");
}

} // namespace
