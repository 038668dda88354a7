#include "application.h"

#include "app_exception.h"

TApplication::TApplication(int &argc, char **argv) : QApplication(argc, argv)
{
}

bool TApplication::notify(QObject *receiver, QEvent *event)
{
    try {
        return QApplication::notify(receiver, event);
    } catch (...) {
        ReportApplicationError();
    }
    return false;
}
