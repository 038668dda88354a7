// The login dialog: who is offered, passwords by their MD5, the session it fills.

#include "app_fixture.h"

namespace {

class LoginWindow : public AppWindowsTest
{
protected:
    // As Execute shows it, without its modal loop.
    void ShowLogin()
    {
        LoginFM->hide();
        LoginFM->show();
        QCoreApplication::processEvents();
    }
};

TEST_F(LoginWindow, LogsInWithOrWithoutPasswordCancelKeepsTheSessionAWrongPasswordShowsItsMessageAndActiveUsersAreOffered)
{
    SetPassword(2, "Секрет-42");
    ModalDriver driver;
    QStringList seen;
    const auto look = [&](QWidget *) {
        const QLineEdit *edit = LoginFM->cxPassword;
        seen << QString("%1 %2 %3 %4").arg(int(edit->isEnabled())).arg(int(edit->echoMode())).arg(edit->text())
                    .arg(int(LoginFM->cxMessage->isVisible()));
    };
    driver.Then(look).Then(Login(1));
    EXPECT_TRUE(LoginFM->Execute());
    EXPECT_EQ(Session(), "1 Администратор 1 Администратор");

    // The same dialog serves the next login; the password is compared by its MD5, case and all.
    driver.Then(Login(2, "секрет-42")).Then(look).Then(Login(0, "Секрет-42"));
    EXPECT_TRUE(LoginFM->Execute());
    EXPECT_EQ(seen, QStringList({"0 0 Пароль не задан 0", "1 2 секрет-42 1"})) << "a wrong text stays for correction";
    EXPECT_EQ(Session(), "2 Оператор 2 Оператор");

    driver.Then(Login(3, QString(), false));
    EXPECT_FALSE(LoginFM->Execute());
    driver.Then([&](QWidget *) { LoginFM->close(); });
    EXPECT_FALSE(LoginFM->Execute());
    EXPECT_EQ(Session(), "2 Оператор 2 Оператор");
    EXPECT_EQ(driver.Ran(), 7);

    // Nobody logged in: a wrong password shows only its message until typing; then who is offered.
    CurrentUserId = 0;
    SetPassword(1, "admin");
    SetPassword(2, "two");
    ShowLogin();
    EXPECT_EQ(LoginFM->cxUserName->currentText(), "Администратор");
    EXPECT_FALSE(LoginFM->cxMessage->isVisible());
    TypeText(LoginFM->cxPassword, "nimda");
    LoginFM->AdvGlowButton1->click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(LoginFM->cxMessage->isVisible());
    EXPECT_EQ(LoginFM->cxMessage->text(), "Неверный пароль");
    EXPECT_NE(LoginFM->ModalResult(), mrOk);
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(CurrentUserId, 0);

    ASSERT_TRUE(PickUser(2));
    EXPECT_TRUE(LoginFM->cxPassword->text().isEmpty());
    EXPECT_TRUE(LoginFM->cxMessage->isVisible()) << "changing the user hides nothing";
    TypeText(LoginFM->cxPassword, "t");
    EXPECT_FALSE(LoginFM->cxMessage->isVisible());
    ASSERT_TRUE(PickUser(3));
    ASSERT_TRUE(PickUser(1));
    EXPECT_TRUE(LoginFM->cxPassword->isEnabled());
    EXPECT_TRUE(LoginFM->cxPassword->text().isEmpty()) << "no placeholder left from a user without password";
    EXPECT_EQ(LoginFM->cxPassword->echoMode(), QLineEdit::Password);

    Exec("update USERS set STATE = 2 where ID in (1, 3)");
    Exec("insert into USERS (USERNAME, ID_ROLE, STATE) values ('Механик', 3, 1)");
    CurrentUserId = 2;
    ShowLogin();
    QStringList offered;
    for (int i = 0; i < LoginFM->cxUserName->count(); ++i)
        offered << LoginFM->cxUserName->itemText(i);
    EXPECT_EQ(offered, QStringList({"Администратор", "Оператор", "Механик"}));
    EXPECT_EQ(LoginFM->cxUserName->currentText(), "Оператор");
    LoginFM->hide();
}

} // namespace
