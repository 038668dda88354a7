#pragma once
// The program's own windows over a copy of the deployed database, with the kept login dialog and the
// per-user folder in a temporary place.

#include "data_dm.h"
#include "data_module_copy.h"
#include "login_fm.h"
#include "lookup_combo_box.h"
#include "main_fm.h"
#include "modal_driver.h"
#include "recording_shell.h"
#include "scripted_dialogs.h"
#include "type_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

class AppWindowsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // A sub-folder, so that the ini glued to the folder's name stays inside the temporary one.
        dataHome = home.path() + "/share";
        PrepareDataHome(dataHome);
        dialogs.Install();
        CurrentUserId = CurrentRoleId = 0;
        CurrentUserName.clear();
        CurrentRoleName = QVariant();
        dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
        ASSERT_TRUE(dm->pFIBDatabaseMain.Connected());
        ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
        dm->pFIBTransaction1.StartTransaction();
        LoginFM = new TLoginFM();
    }

    void TearDown() override
    {
        mainWindow.reset();
        delete LoginFM;
        LoginFM = nullptr;
        dm.reset();
        ForgetDataHome();
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

    void Exec(const QString &sql) { ExecIn(*dm, sql); }
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

    QTemporaryDir home;
    QString dataHome;
    ScriptedDialogs dialogs;
    RecordingShell shell;
    std::unique_ptr<TDataDM> dm;
    std::unique_ptr<TMainFM> mainWindow;
};
