// Start-up of the program: the data module comes first, and with it the database.
#include "data_dm.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    TDataDM dataModule(&application);
    if (ApplicationTerminateRequested())
        return 1;
    std::printf("%s\n", qPrintable(QStringLiteral("База данных готова: %1").arg(dataModule.DbFileName)));
    std::printf("%s\n", qPrintable(QStringLiteral("Окна программы появятся в следующих версиях.")));
    return 0;
}
