#include "shell.h"

#include <cstdio>

namespace {

Shell *g_installed = nullptr;

} // namespace

Shell &Shell::Current()
{
    static ConsoleShell console;
    return g_installed ? *g_installed : console;
}

void Shell::Install(Shell *shell)
{
    g_installed = shell;
}

bool Shell::CanOpen(const QString &)
{
    return false;
}

bool ConsoleShell::Open(const QString &documentOrUrl)
{
    std::fprintf(stderr, "open: %s\n", qPrintable(documentOrUrl));
    return false;
}
