#pragma once
// Opening a finished document or a web page with whatever the desktop associates with it.

#include <QString>

class Shell
{
public:
    virtual ~Shell() = default;
    // A local file path or an address with a scheme ("https://…"); false when nothing could open it.
    virtual bool Open(const QString &documentOrUrl) = 0;

    // The shell in force; installing null restores the default one.
    static Shell &Current();
    static void Install(Shell *shell);
};

// Without a desktop: the request is written to the standard error stream and nothing opens.
class ConsoleShell : public Shell
{
public:
    bool Open(const QString &documentOrUrl) override;
};
