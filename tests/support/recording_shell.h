#pragma once
// A shell for tests: records what it was asked to open and opens nothing.

#include "shell.h"

#include <QStringList>

class RecordingShell : public Shell
{
public:
    // Installs itself for its lifetime.
    RecordingShell() { Shell::Install(this); }
    ~RecordingShell() override { Shell::Install(nullptr); }
    RecordingShell(const RecordingShell &) = delete;
    RecordingShell &operator=(const RecordingShell &) = delete;

    bool Open(const QString &documentOrUrl) override
    {
        Opened << documentOrUrl;
        return Succeeds;
    }

    bool CanOpen(const QString &extension) override
    {
        Asked << extension;
        return Openable;
    }

    QStringList Opened;
    bool Succeeds = true;
    // What CanOpen answers, and the extensions it was asked about.
    bool Openable = true;
    QStringList Asked;
};
