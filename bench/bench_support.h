#pragma once
// What the benchmarks share: the process's memory figures and the run of the registered benchmarks.

#include <QFile>
#include <QString>
#include <benchmark/benchmark.h>

// A figure of /proc/self/status in kB, such as "VmHWM:" (peak resident memory); 0 when unreadable.
inline double statusKb(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(qstrlen(key)).trimmed().split(' ').first().toDouble();
    return 0;
}

// Runs the benchmarks the command line selects; the exit code of the program.
inline int runBenchmarks(int &argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
