// Test entry for suites with windows: one application object for the whole process, no screen needed,
// and the C locale so that numbers and dates print the same everywhere.

#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
