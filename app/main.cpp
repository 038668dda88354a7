// Start-up of the program: the data module with the database first, then the login, then the main window
// and its message loop. The run's one transaction is committed as the program ends in order: after
// "Выход", after a closed main window, and after SIGTERM, SIGINT or SIGHUP; then, unless the user switched it
// off, the database is backed up.
#include "app_exception.h"
#include "application.h"
#include "data_dm.h"
#include "desktop_shell.h"
#include "login_fm.h"
#include "lookup_combo_box.h"
#include "main_fm.h"
#include "message_box_dialogs.h"
#include "signal_exit.h"

#include <QLocale>
#include <QTimer>
#include <cstdio>

namespace {

bool isTraceRun(const QStringList &arguments)
{
    return arguments.size() > 1 && arguments.at(1).toUpper() == QLatin1String("TRACE");
}

// KELVARION_SMOKE serves the tests of the real program: message boxes go to the standard error stream
// instead of the screen, the login dialog's caption and users are written there once it is up, and so is
// the main window's caption once it is shown. "1" then cancels the login, "enter" logs in as the user
// offered first, "wait" leaves the dialog to the user (or to a signal).
enum class SmokeRun { None, Cancel, Enter, Wait };

SmokeRun smokeRun()
{
    const QString value = qEnvironmentVariable("KELVARION_SMOKE");
    if (value == QLatin1String("1"))
        return SmokeRun::Cancel;
    if (value == QLatin1String("enter"))
        return SmokeRun::Enter;
    if (value == QLatin1String("wait"))
        return SmokeRun::Wait;
    return SmokeRun::None;
}

void reportLogin(TLoginFM *login, SmokeRun smoke)
{
    QStringList users;
    for (int i = 0; i < login->cxUserName->count(); ++i)
        users << login->cxUserName->itemText(i);
    std::fprintf(stderr, "%s: %s\n", qPrintable(login->windowTitle()), qPrintable(users.join(QStringLiteral(", "))));
    std::fflush(stderr);
    if (smoke == SmokeRun::Cancel)
        login->SetModalResult(mrCancel);
    else if (smoke == SmokeRun::Enter)
        login->AdvGlowButton1->click();
}

// The hard commit of the run. A transaction that nothing started since the last commit has nothing to
// keep; any other failure means the run's work is lost, and the user is told.
void commitRun(TDataDM &dataModule)
{
    if (!dataModule.pFIBTransaction1.Active())
        return;
    try {
        dataModule.DataModuleDestroy();
    } catch (...) {
        ReportApplicationError();
    }
}

// The backup of an orderly exit; one that fails is said, and the program still ends in order.
void backUpAtExit(TDataDM &dataModule)
{
    try {
        dataModule.AutomaticBackup();
    } catch (...) {
        ReportApplicationError();
    }
}

// From the data module to the end of the message loop; the exit code.
int run(TApplication &application, const QStringList &arguments, SmokeRun smoke, TSignalExit &signalExit,
        TDataDM *&dataModule)
{
    dataModule = new TDataDM(&application, arguments);
    // E1001 has been shown; the start goes on as told and ends at once, with an error.
    const bool startFailed = ApplicationTerminateRequested();

    LoginFM = new TLoginFM();
    if (isTraceRun(arguments)) {
        CurrentUserId = 1;
        CurrentRoleId = 1;
    } else {
        if (smoke != SmokeRun::None)
            QTimer::singleShot(0, LoginFM, [smoke] { reportLogin(LoginFM, smoke); });
        // A modal window ends at once in an application that was asked to end.
        if (ApplicationTerminateRequested() || signalExit.Requested() || !LoginFM->Execute())
            RequestApplicationTerminate();
    }

    int exitCode = 0;
    {
        TMainFM mainForm(arguments);
        if (!ApplicationTerminateRequested()) {
            mainForm.show();
            if (smoke != SmokeRun::None) {
                std::fprintf(stderr, "%s\n", qPrintable(mainForm.windowTitle()));
                std::fflush(stderr);
            }
            // A signal that came while the window was being shown leaves no loop to end.
            if (signalExit.Requested())
                mainForm.close();
            else
                exitCode = application.exec();
        }
    }
    commitRun(*dataModule);
    if (!startFailed)
        backUpAtExit(*dataModule);
    return startFailed ? 1 : exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    TApplication application(argc, argv);
    // Sums, quantities and dates read the Russian way ("1 900,00") whatever the desktop's language.
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    const QStringList arguments = QCoreApplication::arguments();
    const SmokeRun smoke = smokeRun();

    MessageBoxDialogs messageBoxes;
    DesktopShell desktopShell;
    if (smoke == SmokeRun::None)
        Dialogs::Install(&messageBoxes);
    Shell::Install(&desktopShell);
    // Before anything loads the database engine, whose own handlers then pass the signals on.
    TSignalExit signalExit;

    int exitCode = 0;
    TDataDM *dataModule = nullptr;
    try {
        exitCode = run(application, arguments, smoke, signalExit, dataModule);
    } catch (...) {
        // A start on a database that is not this program's, or half made: its error, then an end in order.
        ReportApplicationError();
        exitCode = 1;
    }
    delete LoginFM;
    LoginFM = nullptr;
    delete dataModule;
    Shell::Install(nullptr);
    Dialogs::Install(nullptr);
    return exitCode;
}
