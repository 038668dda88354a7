#pragma once
// The ini file beside the executable with the Russian column titles of grids and label captions of
// generated cards: "<folder of the executable>/<its base name>.ini".

#include <QSettings>
#include <QString>

class TCaptionsFile
{
public:
    TCaptionsFile() : m_ini(FileName(), QSettings::IniFormat) {}

    static QString FileName();

    // The value of `key` in `section`, or `fallback` when either is absent.
    QString Read(const QString &section, const QString &key, const QString &fallback) const
    {
        return m_ini.value(section + QLatin1Char('/') + key, fallback).toString();
    }
    void Write(const QString &section, const QString &key, const QString &value)
    {
        m_ini.setValue(section + QLatin1Char('/') + key, value);
    }

private:
    QSettings m_ini;
};
