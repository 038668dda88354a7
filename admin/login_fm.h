#pragma once
// The dialog with which a user enters the program, and with which the user is changed during work.
// It fills the four session variables; one object serves the start and every change of user.

#include "fm_dialog.h"

#include "fib_datasource.h"

#include <QLabel>
#include <QLineEdit>

class TLookupComboBox;

class TLoginFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TLoginFM(QWidget *parent = nullptr);

    QLabel *lbUserName;
    TLookupComboBox *cxUserName; // the users that may log in: key ID, text USERNAME
    QLabel *lbPassword;
    QLineEdit *cxPassword;
    QLabel *cxMessage; // "Неверный пароль", hidden at first
    TDataSource *dsUsersActive;

    void FormShow(QObject *sender) override;
    // The user was changed in the list: the password editor follows what is stored for that user.
    void cxUserNamePropertiesEditValueChanged(QObject *sender);
    // Typing in the password editor hides the message.
    void cxPasswordPropertiesChange(QObject *sender);
    void actOKExecute(QObject *sender);
    void actCancelExecute(QObject *sender);

    static const QString WrongPasswordText;
    static const QString NoPasswordText;
};

// The login dialog, created at start and kept for the whole run.
extern TLoginFM *LoginFM;
