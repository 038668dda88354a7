#pragma once
// Opening a finished document or a web page with whatever the desktop associates with it.

#include <QString>
#include <QStringList>

class Shell
{
public:
    virtual ~Shell() = default;
    // A local file path or an address with a scheme ("https://…"); false when nothing could open it.
    virtual bool Open(const QString &documentOrUrl) = 0;
    // Whether the desktop has a program for files with this extension ("xlsx"); by default none is known.
    virtual bool CanOpen(const QString &extension);

    // The shell in force; installing null restores the default one.
    static Shell &Current();
    static void Install(Shell *shell);
};

// Without a desktop: the request is written to the standard error stream and nothing opens.
class ConsoleShell : public Shell
{
public:
    bool Open(const QString &documentOrUrl) override;
    // The extensions it claims to open, as a test sets them.
    bool CanOpen(const QString &extension) override { return OpenableExtensions.contains(extension); }
    QStringList OpenableExtensions;
};
