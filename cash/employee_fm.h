#pragma once
// The dictionary of employees, found by name, position, employment state, address and phones.

#include "list_fm.h"

class TLookupComboBox;
class TTextEdit;

class TEmployeeFM : public TListFM
{
    Q_OBJECT
public:
    explicit TEmployeeFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmEmployee;
    TTextEdit *edEmplName;
    TLookupComboBox *cbPosition;
    TLookupComboBox *cbStatus;
    TTextEdit *edAddress;
    TTextEdit *edPhones;

    // The lists of both lookups are read anew: a position added elsewhere is there.
    void FormShow(QObject *sender) override;
};
