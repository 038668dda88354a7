#pragma once
// The cash journal: payments in and out of a period, found by number, type, purpose, customer and form
// of payment, and entered through the payment card.

#include "list_fm.h"

class TCheckBoxEdit;
class TDateEdit;
class TLookupComboBox;
class TTextEdit;

class TPaymentFM : public TListFM
{
    Q_OBJECT
public:
    explicit TPaymentFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmPayments;
    TDateEdit *deUp;
    TDateEdit *deTo;
    TLookupComboBox *lcbType;
    TTextEdit *edPayNum;
    TLookupComboBox *lcbPurpose;
    TTextEdit *edClientName;
    // Captioned like lcbType, as the journal has always had it.
    TLookupComboBox *lcbNal;
    TCheckBoxEdit *cbDel;

    void FormShow(QObject *sender) override;
    // The filters of the table, and no object or sum filter ever.
    void FillPayParameters(TFIBDataSet *dataSet);

    static const QString ObjectField;

private:
    TFilterTable m_payFilters;
};
