#pragma once
// The program's own windows over a copy of the deployed database, with the kept login dialog, the
// per-user folder in a temporary place and the window suites' helpers.

#include "../forms/window_fixture.h"
#include "login_fm.h"
#include "lookup_combo_box.h"
#include "main_fm.h"
#include "type_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>

class AppWindowsTest : public WindowTest
{
protected:
    // Nobody logged in yet.
    void SetUp() override
    {
        WindowTest::SetUp();
        CurrentUserId = CurrentRoleId = 0;
        CurrentUserName.clear();
        CurrentRoleName = QVariant();
        LoginFM = new TLoginFM();
    }

    void TearDown() override
    {
        mainWindow.reset();
        delete LoginFM;
        LoginFM = nullptr;
        WindowTest::TearDown();
    }

    // Its update check is already done, so that no test goes to the network by chance.
    TMainFM &NewMain(const QStringList &arguments = {"kelvarion"})
    {
        mainWindow.reset();
        mainWindow = std::make_unique<TMainFM>(arguments);
        mainWindow->UpdateCheck.MarkerPath = home.path() + "/chkupd";
        QFile(mainWindow->UpdateCheck.MarkerPath).open(QIODevice::WriteOnly);
        return *mainWindow;
    }

    void SetPassword(int userId, const QString &password)
    {
        Exec(QString("update USERS set PASSWORD = '%1' where ID = %2").arg(TDataDM::MD5(password)).arg(userId));
    }

    static QString Session()
    {
        return QString("%1 %2 %3 %4").arg(CurrentUserId).arg(CurrentUserName).arg(CurrentRoleId).arg(CurrentRoleName.toString());
    }

    // As a click in the login list would.
    static bool PickUser(int id)
    {
        for (int i = 0; i < LoginFM->cxUserName->count(); ++i) {
            if (LoginFM->cxUserName->itemData(i).toInt() == id) {
                LoginFM->cxUserName->setCurrentIndex(i);
                emit LoginFM->cxUserName->activated(i);
                return true;
            }
        }
        return false;
    }
    // A step on the login dialog: picks the user (unless 0), types the password (unless null), then
    // logs in or cancels.
    static ModalDriver::Step Login(int id, const QString &password = QString(), bool ok = true)
    {
        return [=](QWidget *modal) {
            EXPECT_EQ(modal, LoginFM);
            EXPECT_TRUE(id == 0 || PickUser(id));
            if (!password.isNull())
                TypeText(LoginFM->cxPassword, password);
            (ok ? LoginFM->AdvGlowButton1 : LoginFM->AdvGlowButton2)->click();
        };
    }

    // The child windows not closed, in the order of their creation.
    static QList<QWidget *> Children(TMainFM &mainForm)
    {
        QList<QWidget *> windows;
        for (QMdiSubWindow *sub : mainForm.MDIClient->subWindowList(QMdiArea::CreationOrder))
            if (!sub->isHidden())
                windows << sub->widget();
        return windows;
    }

    static void Flush()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    const QString dataHome = home.path() + "/share";
    std::unique_ptr<TMainFM> mainWindow;
};
