#include "dialogs.h"

#include <cstdio>

namespace {

Dialogs *g_installed = nullptr;

} // namespace

Dialogs &Dialogs::Current()
{
    static ConsoleDialogs console;
    return g_installed ? *g_installed : console;
}

void Dialogs::Install(Dialogs *dialogs)
{
    g_installed = dialogs;
}

int ConsoleDialogs::Show(Kind, const QString &text, Buttons buttons, const QString &caption)
{
    std::fprintf(stderr, "%s%s\n", caption.isEmpty() ? "" : qPrintable(caption + QStringLiteral(": ")),
                 qPrintable(text));
    return buttons == Ok || buttons == OkCancel ? ResultOk : ResultYes;
}
