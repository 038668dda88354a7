// Process start to the login dialog on an existing database: the real program, run offscreen with
// KELVARION_SMOKE=1, writes a line to its error stream once the login dialog is up, then cancels it and
// ends. The time runs from starting the process to that line. An untimed first start deploys the database.
#include "bench_support.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>

namespace {

const QByteArray kLoginLine = QStringLiteral("Вход в программу").toUtf8();

// Milliseconds from the start of the program to its login line; negative when the line never came.
double startToLogin(const QString &dataHome)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), dataHome);
    environment.insert(QStringLiteral("KELVARION_SMOKE"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.setReadChannel(QProcess::StandardError);
    QElapsedTimer clock;
    clock.start();
    process.start(QStringLiteral(KELVARION_EXECUTABLE));
    QByteArray written;
    double ms = -1;
    while (process.waitForReadyRead(600000)) {
        written += process.readAll();
        if (written.contains(kLoginLine)) {
            ms = double(clock.nsecsElapsed()) / 1e6;
            break;
        }
    }
    process.waitForFinished(60000);
    return ms;
}

QTemporaryDir &dataHome()
{
    static QTemporaryDir dir;
    return dir;
}

void BM_StartToLogin(benchmark::State &state)
{
    for (auto _ : state) {
        const double ms = startToLogin(dataHome().path());
        if (ms < 0) {
            state.SkipWithError("no login dialog");
            break;
        }
        state.SetIterationTime(ms / 1000);
    }
}

} // namespace

BENCHMARK(BM_StartToLogin)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (startToLogin(dataHome().path()) < 0) {
        std::fprintf(stderr, "the first start showed no login dialog\n");
        return 1;
    }
    return runBenchmarks(argc, argv);
}
