#pragma once
// The modal picker of a customer for the order card: a filtered list of all customers, the shop's own
// row 1 included; OK keeps the number of the chosen one.

#include "filter_table.h"
#include "fm_dialog.h"
#include "frame_settings.h"

#include <memory>

class TFIBDataSet;
class TGridFrame;
class TTextEdit;
namespace Ui {
class CustDialogFM;
}

class TCustDialogFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TCustDialogFM(QWidget *parent = nullptr);
    ~TCustDialogFM() override;

    TGridFrame *frmCust;
    TTextEdit *edClientName;
    TTextEdit *edPhone;
    TTextEdit *edAddress;
    // The ID of the row chosen by OK; 0 when the grid had no row then.
    int CustId = 0;

    void FormCreate(QObject *sender);
    void FormShow(QObject *sender) override;
    void actOKExecute(QObject *sender);
    void actCancelExecute(QObject *sender);
    void frmCustactDblClickExecute(QObject *sender);
    void FillParameters(TFIBDataSet *dataSet);

    static const QString Caption;

private:
    std::unique_ptr<Ui::CustDialogFM> ui;
    TFrameTable m_frames;
    TFilterTable m_filters;
};
