#pragma once
// The dictionary of store operation types, with the generated card and no filter.

#include "list_fm.h"

class TOperationTypeFM : public TListFM
{
    Q_OBJECT
public:
    explicit TOperationTypeFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmOperationType;
};
