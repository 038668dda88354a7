#pragma once
// The desktop's own opener for documents and web pages.

#include "shell.h"

class DesktopShell : public Shell
{
public:
    bool Open(const QString &documentOrUrl) override;
    // Asks the desktop's file associations for a default program of the extension's type.
    bool CanOpen(const QString &extension) override;
};
