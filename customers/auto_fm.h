#pragma once
// The register of vehicles with its four reference lists (makes, models, body types, years) side by
// side below it; from a vehicle the user jumps to its orders in the orders journal.

#include "filter_table.h"
#include "fm_base.h"
#include "frame_settings.h"

#include <memory>

class QAction;
class QResizeEvent;
class TCheckBoxEdit;
class TFIBDataSet;
class TGridFrame;
class TLookupComboBox;
class TTextEdit;
namespace Ui {
class AutoFM;
}

class TAutoFM : public TfmBase
{
    Q_OBJECT
public:
    explicit TAutoFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TAutoFM() override;

    TGridFrame *frmAuto;
    TGridFrame *frmMark;
    TGridFrame *frmModel;
    TGridFrame *frmAType;
    TGridFrame *frmAYear;
    TLookupComboBox *lcbType;
    TLookupComboBox *lcbModel;
    TLookupComboBox *lcbMark;
    TLookupComboBox *lcbYear;
    TTextEdit *edReg;
    TTextEdit *edVIN;
    TTextEdit *edDrive;
    TTextEdit *edColName;
    TCheckBoxEdit *cbDel;
    // Item of the popup menu of frmAuto.
    QAction *miShowOrders;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FormResize(QObject *sender);
    void FillParameters(TFIBDataSet *dataSet);
    void miShowOrdersClick(QObject *sender);

    static const QString Caption;

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<Ui::AutoFM> ui;
    TFrameTable m_frames;
    TFilterTable m_filters;
};
