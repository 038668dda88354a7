#pragma once
// The built-in texts of the three deployment scripts and the names of the files that replace them.

#include <QString>
#include <QStringList>

enum class DeployScript { Tables, Procedures, Update };

// Lines of the script as the program holds it.
QStringList BuiltInScript(DeployScript script);
// "script_tab.txt", "script_proc.txt", "script_update.txt".
QString OverrideFileName(DeployScript script);
// Lines of an override file: UTF-8 when it is valid UTF-8, else Windows-1251. False when unreadable.
bool ReadOverrideFile(const QString &path, QStringList &lines);
