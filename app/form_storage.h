#pragma once
// Keeps chosen properties of a form's controls and the form's placement in an ini file between runs.

#include <QString>
#include <QStringList>

class QWidget;

class TFormStorage
{
public:
    explicit TFormStorage(QWidget *form);

    QString IniFileName;
    // Section of the ini file; the form's object name when empty.
    QString IniSection;
    // "<control>.<Property>", e.g. "edVal1.Text".
    QStringList StoredProps;

    // Reads the properties and the placement; a missing or unreadable file leaves everything as it is.
    // True when a placement was read.
    bool Restore();
    // Writes the properties and the placement; a file that cannot be written is left alone, silently.
    void Save();

private:
    QString Section() const;
    QWidget *m_form;
};
