#pragma once
// The Firebird client library, loaded at run time so that a missing library is an error
// the program can report instead of a failed process start.

#include <ibase.h>
#include <QString>

struct TFIBClientLibrary
{
#define FIB_ENTRY(name) decltype(&::name) name = nullptr;
#include "fib_library_entries.inc"
#undef FIB_ENTRY

    // Loads (once per process) the library named `libraryName`, or the platform's embedded client
    // when the name is empty or the Windows name "fbembed.dll". Raises EFIBClientError when it fails.
    static TFIBClientLibrary &Load(const QString &libraryName = QString());
    // The library is loaded and every entry point was found.
    static bool IsLoaded();

    // Name of the library file used when the configured name has no meaning here.
    static QString DefaultLibraryName();

    // The engine answers SIGINT and SIGTERM by shutting every attachment down, which leaves the program
    // with a dead connection and its transaction lost. This refuses that shutdown; `onRefused` is called
    // instead, on the engine's own thread, and may only do what a signal handler may. Null lets the
    // engine shut down again. Loads the library.
    static void RefuseSignalShutdown(void (*onRefused)());
};
