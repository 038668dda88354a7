#pragma once
// The dictionary of accumulated discount ranges, with the generated card and no filter.

#include "list_fm.h"

class TDiscountFM : public TListFM
{
    Q_OBJECT
public:
    explicit TDiscountFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmDiscount;
};
