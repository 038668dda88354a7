#pragma once
// The catalogue of work: services found by name, category, article and code anywhere in the text.

#include "list_fm.h"

class TTextEdit;

class TServicesFM : public TListFM
{
    Q_OBJECT
public:
    explicit TServicesFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmServices;
    TTextEdit *edServName;
    TTextEdit *edCategory;
    TTextEdit *edArticul;
    TTextEdit *edScode;
};
