#pragma once
// The program's own windows over a copy of the deployed database: a data module, the kept login dialog,
// dialogs answered from a script, a shell that opens nothing, and the per-user folder in a temporary place.

#include "data_dm.h"
#include "login_fm.h"
#include "lookup_combo_box.h"
#include "main_fm.h"
#include "modal_driver.h"
#include "recording_shell.h"
#include "scripted_dialogs.h"
#include "data_module_copy.h"

#include <QCoreApplication>
#include <QDir>
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
        dataHome = home.path() + "/share";
        PrepareDataHome(dataHome);
        dialogs.Install();
        CurrentUserId = 0;
        CurrentRoleId = 0;
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

    // A main window whose update check is already done, so that no test goes to the network by chance.
    TMainFM &NewMain(const QStringList &arguments = {"kelvarion"})
    {
        mainWindow.reset();
        mainWindow = std::make_unique<TMainFM>(arguments);
        mainWindow->UpdateCheck.MarkerPath = home.path() + "/chkupd";
        QFile marker(mainWindow->UpdateCheck.MarkerPath);
        marker.open(QIODevice::WriteOnly);
        return *mainWindow;
    }

    void Exec(const QString &sql) { ExecIn(*dm, sql); }

    // Picks the user of that ID in the login list, as a click in the list would.
    static bool PickUser(TLoginFM &login, int id)
    {
        for (int i = 0; i < login.cxUserName->count(); ++i) {
            if (login.cxUserName->itemData(i).toInt() == id) {
                login.cxUserName->setCurrentIndex(i);
                emit login.cxUserName->activated(i);
                return true;
            }
        }
        return false;
    }

    static QStringList OfferedUsers(TLoginFM &login)
    {
        QStringList names;
        for (int i = 0; i < login.cxUserName->count(); ++i)
            names << login.cxUserName->itemText(i);
        return names;
    }

    // The child windows of the frame that are not closed, in the order of their creation.
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
