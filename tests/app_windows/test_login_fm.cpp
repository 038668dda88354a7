// The login dialog: who is offered, passwords by their MD5, the session it fills.

#include "app_windows_fixture.h"
#include "type_text.h"

#include <QTest>

namespace {

class LoginWindow : public AppWindowsTest
{
protected:
    void SetPassword(int userId, const QString &password)
    {
        Exec(QString("update USERS set PASSWORD = '%1' where ID = %2").arg(TDataDM::MD5(password)).arg(userId));
    }
    // Shows the dialog as Execute does, without its modal loop.
    void ShowLogin()
    {
        LoginFM->show();
        QCoreApplication::processEvents();
    }
};

TEST_F(LoginWindow, HasItsCaptionsAndStartsHidingTheMessage)
{
    EXPECT_EQ(LoginFM->windowTitle(), "Вход в программу");
    EXPECT_EQ(LoginFM->actOK->text(), "Вход");
    EXPECT_EQ(LoginFM->actCancel->text(), "Отмена");
    EXPECT_EQ(LoginFM->lbUserName->text(), "Имя пользователя");
    EXPECT_EQ(LoginFM->lbPassword->text(), "Пароль");
    EXPECT_EQ(LoginFM->cxMessage->text(), "Неверный пароль");
    EXPECT_EQ(LoginFM->dsUsersActive->DataSet(), &dm->spUsersActiveSelect);
    ShowLogin();
    EXPECT_FALSE(LoginFM->cxMessage->isVisible());
    LoginFM->hide();
}

TEST_F(LoginWindow, AtTheFirstLoginTheFirstUserIsChosen)
{
    ShowLogin();
    EXPECT_EQ(OfferedUsers(*LoginFM), QStringList({"Администратор", "Оператор", "Только просмотр"}));
    EXPECT_EQ(LoginFM->cxUserName->EditValue().toInt(), 1);
    EXPECT_EQ(LoginFM->cxUserName->currentText(), "Администратор");
    LoginFM->hide();
}

TEST_F(LoginWindow, UserWithoutPasswordGetsInWhateverTheEditorHolds)
{
    ModalDriver driver;
    bool disabled = false;
    QString shown;
    bool plainEcho = false;
    driver.Then([&](QWidget *modal) {
        EXPECT_EQ(modal, LoginFM);
        disabled = !LoginFM->cxPassword->isEnabled();
        shown = LoginFM->cxPassword->text();
        plainEcho = LoginFM->cxPassword->echoMode() == QLineEdit::Normal;
        LoginFM->AdvGlowButton1->click();
    });
    EXPECT_TRUE(LoginFM->Execute());
    EXPECT_TRUE(disabled);
    EXPECT_EQ(shown, "Пароль не задан");
    EXPECT_TRUE(plainEcho);
    EXPECT_EQ(CurrentUserId, 1);
    EXPECT_EQ(CurrentUserName, "Администратор");
    EXPECT_EQ(CurrentRoleId, 1);
    EXPECT_EQ(CurrentRoleName.toString(), "Администратор");
    EXPECT_TRUE(dialogs.Texts().isEmpty());
}

TEST_F(LoginWindow, PasswordIsCheckedByItsLowerCaseMd5)
{
    SetPassword(2, "Секрет-42");
    ModalDriver driver;
    bool enabled = false, masked = false, messageAfterWrong = false, stayedOpen = false;
    QString afterWrong;
    driver
        .Then([&](QWidget *) {
            ASSERT_TRUE(PickUser(*LoginFM, 2));
            enabled = LoginFM->cxPassword->isEnabled();
            masked = LoginFM->cxPassword->echoMode() == QLineEdit::Password;
            EXPECT_TRUE(LoginFM->cxPassword->text().isEmpty());
            TypeText(LoginFM->cxPassword, "секрет-42");
            LoginFM->AdvGlowButton1->click();
        })
        .Then([&](QWidget *modal) {
            stayedOpen = modal == LoginFM && LoginFM->isVisible();
            messageAfterWrong = LoginFM->cxMessage->isVisible();
            afterWrong = LoginFM->cxPassword->text();
            TypeText(LoginFM->cxPassword, "Секрет-42");
            LoginFM->AdvGlowButton1->click();
        });
    EXPECT_TRUE(LoginFM->Execute());
    EXPECT_TRUE(enabled);
    EXPECT_TRUE(masked);
    EXPECT_TRUE(stayedOpen);
    EXPECT_TRUE(messageAfterWrong);
    EXPECT_EQ(afterWrong, "секрет-42") << "the text stays for correction";
    EXPECT_EQ(CurrentUserId, 2);
    EXPECT_EQ(CurrentUserName, "Оператор");
    EXPECT_EQ(CurrentRoleId, 2);
    EXPECT_EQ(CurrentRoleName.toString(), "Оператор");
}

TEST_F(LoginWindow, WrongPasswordShowsOnlyItsMessage)
{
    SetPassword(1, "admin");
    ShowLogin();
    TypeText(LoginFM->cxPassword, "nimda");
    LoginFM->AdvGlowButton1->click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(LoginFM->cxMessage->isVisible());
    EXPECT_EQ(LoginFM->cxMessage->text(), "Неверный пароль");
    EXPECT_NE(LoginFM->ModalResult(), mrOk);
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(CurrentUserId, 0);
    EXPECT_TRUE(CurrentUserName.isEmpty());
    LoginFM->hide();
}

TEST_F(LoginWindow, TypingHidesTheMessageButChangingTheUserDoesNot)
{
    SetPassword(1, "one");
    SetPassword(2, "two");
    ShowLogin();
    TypeText(LoginFM->cxPassword, "bad");
    LoginFM->AdvGlowButton1->click();
    ASSERT_TRUE(LoginFM->cxMessage->isVisible());

    ASSERT_TRUE(PickUser(*LoginFM, 2));
    EXPECT_TRUE(LoginFM->cxPassword->text().isEmpty()) << "the password is cleared";
    EXPECT_TRUE(LoginFM->cxMessage->isVisible()) << "nothing is hidden until typing";

    TypeText(LoginFM->cxPassword, "t");
    EXPECT_FALSE(LoginFM->cxMessage->isVisible());
    LoginFM->hide();
}

TEST_F(LoginWindow, ChoosingAUserWithoutPasswordLocksTheEditor)
{
    SetPassword(1, "one");
    ShowLogin();
    EXPECT_TRUE(LoginFM->cxPassword->isEnabled());
    ASSERT_TRUE(PickUser(*LoginFM, 3));
    EXPECT_FALSE(LoginFM->cxPassword->isEnabled());
    EXPECT_EQ(LoginFM->cxPassword->text(), "Пароль не задан");
    ASSERT_TRUE(PickUser(*LoginFM, 1));
    EXPECT_TRUE(LoginFM->cxPassword->isEnabled());
    EXPECT_TRUE(LoginFM->cxPassword->text().isEmpty());
    EXPECT_EQ(LoginFM->cxPassword->echoMode(), QLineEdit::Password);
    LoginFM->hide();
}

TEST_F(LoginWindow, BlockedUsersAreNotOfferedButUserOneAlwaysIs)
{
    Exec("update USERS set STATE = 2 where ID in (1, 3)");
    ShowLogin();
    EXPECT_EQ(OfferedUsers(*LoginFM), QStringList({"Администратор", "Оператор"}));
    LoginFM->hide();
}

TEST_F(LoginWindow, UsersAddedMeanwhileAreOfferedAtTheNextShow)
{
    ShowLogin();
    LoginFM->hide();
    Exec("insert into USERS (USERNAME, ID_ROLE, STATE) values ('Механик', 3, 1)");
    ShowLogin();
    EXPECT_TRUE(OfferedUsers(*LoginFM).contains("Механик"));
    LoginFM->hide();
}

TEST_F(LoginWindow, StartsOnThePresentUser)
{
    CurrentUserId = 2;
    ShowLogin();
    EXPECT_EQ(LoginFM->cxUserName->EditValue().toInt(), 2);
    EXPECT_EQ(LoginFM->cxUserName->currentText(), "Оператор");
    LoginFM->hide();
}

TEST_F(LoginWindow, CancelLeavesTheSessionAsItWas)
{
    CurrentUserId = 3;
    CurrentUserName = "Только просмотр";
    CurrentRoleId = 3;
    CurrentRoleName = "Только просмотр";
    ModalDriver driver;
    driver.Then([&](QWidget *) {
        PickUser(*LoginFM, 1);
        LoginFM->AdvGlowButton2->click();
    });
    EXPECT_FALSE(LoginFM->Execute());
    EXPECT_EQ(CurrentUserId, 3);
    EXPECT_EQ(CurrentUserName, "Только просмотр");
    EXPECT_EQ(CurrentRoleId, 3);
    EXPECT_EQ(CurrentRoleName.toString(), "Только просмотр");

    driver.Then([&](QWidget *) { LoginFM->close(); });
    EXPECT_FALSE(LoginFM->Execute()) << "the close box cancels";
    EXPECT_EQ(CurrentUserId, 3);
}

TEST_F(LoginWindow, OneDialogServesEveryLogin)
{
    ModalDriver driver;
    driver.Then([&](QWidget *) { LoginFM->AdvGlowButton1->click(); });
    ASSERT_TRUE(LoginFM->Execute());
    EXPECT_EQ(CurrentUserId, 1);
    driver.Then([&](QWidget *) {
        EXPECT_EQ(LoginFM->cxUserName->EditValue().toInt(), 1) << "starts on the present user";
        PickUser(*LoginFM, 3);
        LoginFM->AdvGlowButton1->click();
    });
    ASSERT_TRUE(LoginFM->Execute());
    EXPECT_EQ(CurrentUserId, 3);
    EXPECT_EQ(CurrentRoleId, 3);
    EXPECT_EQ(CurrentRoleName.toString(), "Только просмотр");
}

} // namespace
