#pragma once
// The journal of customers: one grid of the customers (the shop's own row 1 left out) with filters by
// name, phone, address and by the plate, model and make of the vehicles of their orders.

#include "filter_table.h"
#include "fm_base.h"
#include "frame_settings.h"

#include <memory>

class TFIBDataSet;
class TGridFrame;
class TLookupComboBox;
class TTextEdit;
namespace Ui {
class CustFM;
}

class TCustFM : public TfmBase
{
    Q_OBJECT
public:
    explicit TCustFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TCustFM() override;

    TGridFrame *frmCust;
    TTextEdit *edClientName;
    TTextEdit *edPhone;
    TTextEdit *edAddress;
    TTextEdit *edReg;
    TLookupComboBox *lcbModel;
    TLookupComboBox *lcbMark;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);

    static const QString Caption;

private:
    std::unique_ptr<Ui::CustFM> ui;
    TFrameTable m_frames;
    TFilterTable m_filters;
};
