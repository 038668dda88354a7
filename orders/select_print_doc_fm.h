#pragma once
// The choice of the documents to print for an order: one check box per kind, only the request ticked.

#include "fm_dialog.h"

class QCheckBox;

class TSelectPrintDocFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TSelectPrintDocFM(QWidget *parent = nullptr);

    QCheckBox *cxCheckBox1;
    QCheckBox *cxCheckBox2;
    QCheckBox *cxCheckBox3;
    QCheckBox *cxCheckBox4;
    QCheckBox *cxCheckBox5;

    static const QString Caption;
};
