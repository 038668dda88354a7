#include "fib_library.h"
#include "fib_errors.h"

#include <QHash>
#include <QLibrary>

namespace {

struct LoadedLibrary
{
    QLibrary library;
    TFIBClientLibrary entries;
    bool complete = false;
};

LoadedLibrary *g_loaded = nullptr;
void (*g_onShutdownRefused)() = nullptr;

int refuseSignalShutdown(const int reason, const int mask, void *)
{
    if (!(mask & fb_shut_confirmation) || reason != fb_shutrsn_signal || !g_onShutdownRefused)
        return 0;
    g_onShutdownRefused();
    return 1;
}

QString resolveName(const QString &configured)
{
    // The Windows names of the embedded client mean the local client library here:
    // given a plain file path it runs the engine in-process.
    if (configured.isEmpty() || configured.compare("fbembed.dll", Qt::CaseInsensitive) == 0
        || configured.compare("gds32.dll", Qt::CaseInsensitive) == 0
        || configured.compare("fbclient.dll", Qt::CaseInsensitive) == 0)
        return TFIBClientLibrary::DefaultLibraryName();
    return configured;
}

} // namespace

QString TFIBClientLibrary::DefaultLibraryName()
{
    return QStringLiteral("libfbclient.so.2");
}

bool TFIBClientLibrary::IsLoaded()
{
    return g_loaded && g_loaded->complete;
}

TFIBClientLibrary &TFIBClientLibrary::Load(const QString &libraryName)
{
    if (IsLoaded())
        return g_loaded->entries;

    const QString name = resolveName(libraryName);
    auto loaded = std::make_unique<LoadedLibrary>();
    loaded->library.setFileName(name);
    if (!loaded->library.load())
        throw EFIBClientError(-1, QStringLiteral("Не удалось загрузить клиентскую библиотеку Firebird \"%1\": %2")
                                      .arg(name, loaded->library.errorString()));

    QStringList missing;
#define FIB_ENTRY(entry)                                                                            \
    loaded->entries.entry = reinterpret_cast<decltype(&::entry)>(loaded->library.resolve(#entry)); \
    if (!loaded->entries.entry)                                                                    \
        missing << QStringLiteral(#entry);
#include "fib_library_entries.inc"
#undef FIB_ENTRY
    if (!missing.isEmpty())
        throw EFIBClientError(-1, QStringLiteral("В клиентской библиотеке Firebird \"%1\" нет функций: %2")
                                      .arg(name, missing.join(", ")));
    loaded->complete = true;
    g_loaded = loaded.release(); // kept for the life of the process, as the engine is
    return g_loaded->entries;
}

void TFIBClientLibrary::RefuseSignalShutdown(void (*onRefused)())
{
    TFIBClientLibrary &fb = Load();
    g_onShutdownRefused = onRefused;
    static bool registered = false;
    if (registered)
        return;
    ISC_STATUS_ARRAY status = {};
    fb.fb_shutdown_callback(status, refuseSignalShutdown, fb_shut_confirmation, nullptr);
    if (status[0] == 1 && status[1] != 0)
        throw EFIBClientError(-1, QStringLiteral("Не удалось зарегистрировать обработчик завершения Firebird"));
    registered = true;
}
