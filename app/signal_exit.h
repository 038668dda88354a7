#pragma once
// An orderly end on SIGTERM, SIGINT and SIGHUP, which a desktop logout or shutdown sends. The signal
// handler only writes to a pipe; the message loop then cancels the modal windows and closes the main
// window as "Выход" does once its question is answered OK, so that the run's transaction is committed
// and the placement and currency marks are written.

#include <QObject>

class QSocketNotifier;

class TSignalExit : public QObject
{
public:
    // Catches the three signals and refuses the database engine's own shutdown on them. One at a time
    // per process; made before the engine is loaded, the engine's handlers pass the signals on to it.
    explicit TSignalExit(QObject *parent = nullptr);
    ~TSignalExit() override;

    // A signal has come; the start-up must not enter a message loop any more.
    bool Requested() const { return m_requested; }
    // What a signal leads to: each modal window is closed as cancelled, then the main window is closed.
    void EndInOrder();

    // A modal window that refuses to close is given this many tries, 10 ms apart, before every event
    // loop is told to end.
    static constexpr int MaxTries = 300;

private:
    void ReadPipe();
    void Step();

    QSocketNotifier *m_notifier = nullptr;
    bool m_requested = false;
    bool m_stepping = false;
    int m_tries = 0;
};
