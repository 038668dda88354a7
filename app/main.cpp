// Start-up of the program: the data module with the database first, then the login, then the main window
// and its message loop. The data module commits the run's one transaction as it goes at the end.
#include "data_dm.h"
#include "desktop_shell.h"
#include "login_fm.h"
#include "lookup_combo_box.h"
#include "main_fm.h"
#include "message_box_dialogs.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>

namespace {

bool isTraceRun(const QStringList &arguments)
{
    return arguments.size() > 1 && arguments.at(1).toUpper() == QLatin1String("TRACE");
}

// KELVARION_SMOKE=1 serves the start-up test: message boxes go to the standard error stream instead of the
// screen, and once the login dialog is up, its caption and the users it offers are written there and the
// dialog is cancelled, so that the program ends at that point.
bool isSmokeRun()
{
    return qEnvironmentVariable("KELVARION_SMOKE") == QLatin1String("1");
}

void reportLoginAndCancel(TLoginFM *login)
{
    QStringList users;
    for (int i = 0; i < login->cxUserName->count(); ++i)
        users << login->cxUserName->itemText(i);
    std::fprintf(stderr, "%s: %s\n", qPrintable(login->windowTitle()), qPrintable(users.join(QStringLiteral(", "))));
    login->SetModalResult(mrCancel);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool smoke = isSmokeRun();

    MessageBoxDialogs messageBoxes;
    DesktopShell desktopShell;
    if (!smoke)
        Dialogs::Install(&messageBoxes);
    Shell::Install(&desktopShell);

    auto *dataModule = new TDataDM(&application, arguments);

    LoginFM = new TLoginFM();
    if (isTraceRun(arguments)) {
        CurrentUserId = 1;
        CurrentRoleId = 1;
    } else {
        if (smoke)
            QTimer::singleShot(0, LoginFM, [] { reportLoginAndCancel(LoginFM); });
        // A modal window ends at once in an application that was asked to end.
        if (ApplicationTerminateRequested() || !LoginFM->Execute())
            RequestApplicationTerminate();
    }

    int exitCode = 0;
    {
        TMainFM mainForm(arguments);
        if (!ApplicationTerminateRequested()) {
            mainForm.show();
            exitCode = application.exec();
        }
    }
    delete LoginFM;
    LoginFM = nullptr;
    delete dataModule;
    Shell::Install(nullptr);
    Dialogs::Install(nullptr);
    return exitCode;
}
