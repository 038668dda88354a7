#include "signal_exit.h"

#include "app_exception.h"
#include "fib_library.h"
#include "main_fm.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int g_pipe[2] = {-1, -1};
const int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
struct sigaction g_previous[3];

// Runs in a signal handler or on the engine's thread: nothing but a write.
void wakeUp()
{
    const int saved = errno;
    const char byte = 1;
    if (g_pipe[1] >= 0)
        [[maybe_unused]] const ssize_t written = ::write(g_pipe[1], &byte, 1);
    errno = saved;
}

void onSignal(int)
{
    wakeUp();
}

} // namespace

TSignalExit::TSignalExit(QObject *parent) : QObject(parent)
{
    if (::pipe2(g_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
        g_pipe[0] = g_pipe[1] = -1;
        return;
    }
    m_notifier = new QSocketNotifier(g_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TSignalExit::ReadPipe);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int i = 0; i < 3; ++i)
        sigaction(kSignals[i], &action, &g_previous[i]);

    try {
        TFIBClientLibrary::RefuseSignalShutdown(wakeUp);
    } catch (const std::exception &) {
        // Without the library there is no engine to refuse; the data module reports the missing library.
    }
}

TSignalExit::~TSignalExit()
{
    if (g_pipe[0] < 0)
        return;
    for (int i = 0; i < 3; ++i)
        sigaction(kSignals[i], &g_previous[i], nullptr);
    if (TFIBClientLibrary::IsLoaded())
        TFIBClientLibrary::RefuseSignalShutdown(nullptr);
    delete m_notifier;
    ::close(g_pipe[0]);
    ::close(g_pipe[1]);
    g_pipe[0] = g_pipe[1] = -1;
}

void TSignalExit::ReadPipe()
{
    char bytes[64];
    while (::read(g_pipe[0], bytes, sizeof bytes) > 0) {
    }
    EndInOrder();
}

void TSignalExit::EndInOrder()
{
    m_requested = true;
    if (m_stepping)
        return;
    m_stepping = true;
    m_tries = 0;
    Step();
}

void TSignalExit::Step()
{
    if (QWidget *modal = QApplication::activeModalWidget()) {
        if (++m_tries > MaxTries) {
            QCoreApplication::exit(0);
            m_stepping = false;
            return;
        }
        // A modal window of the program takes its close as cancel; a message box as its escape button.
        modal->close();
        QTimer::singleShot(10, this, [this] { Step(); });
        return;
    }
    m_stepping = false;
    // As "Выход" answered OK; the windows of their own go with it, and the last one ends the loop.
    if (MainFM && MainFM->isVisible())
        MainFM->close();
    QApplication::closeAllWindows();
}
