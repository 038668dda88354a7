#pragma once
// The desktop's own opener for documents and web pages.

#include "shell.h"

class DesktopShell : public Shell
{
public:
    bool Open(const QString &documentOrUrl) override;
};
