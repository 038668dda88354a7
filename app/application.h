#pragma once
// The application object of the program: what escapes an event handler, a timer or a queued call is
// reported through the general error report, and the message loop goes on.

#include <QApplication>

class TApplication : public QApplication
{
public:
    TApplication(int &argc, char **argv);
    bool notify(QObject *receiver, QEvent *event) override;
};
