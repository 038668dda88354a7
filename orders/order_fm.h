#pragma once
// The orders journal: the work orders of a period through a filter panel, the order card for a new or
// an existing order, and the printing of the order's documents. The vehicles window sends it a filter
// through the main window.

#include "filter_order.h"
#include "filter_table.h"
#include "fm_base.h"
#include "frame_settings.h"

class QGroupBox;
class QToolButton;
class TCheckBoxEdit;
class TDateEdit;
class TFIBDataSet;
class TGridFrame;
class TLookupComboBox;
class TTextEdit;

class TOrderFM : public TfmBase, public TOrderFilterTarget
{
    Q_OBJECT
public:
    explicit TOrderFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TOrderFM() override;

    QGroupBox *gbFilter;
    TDateEdit *deUp;
    TDateEdit *deTo;
    TLookupComboBox *lcbOStateMain;
    TTextEdit *edNum;
    TLookupComboBox *lcbCust;
    TTextEdit *edReg;
    TLookupComboBox *lcbMark;
    TLookupComboBox *lcbModel;
    TCheckBoxEdit *cbDel;
    TGridFrame *frmOrders;
    TAction *actPrint;
    QToolButton *ToolButton5;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    void actPrintExecute(QObject *sender);
    // Builds one document of the current order; `kind` names its template.
    void Mak_Zakaz(int orderId, const QString &kind);
    // Writes the period and the texts of the filter into the controls, then arms the filter timer.
    void ApplyOrderFilter(const TFilterOrder &filter) override;

    static const QString Caption;
    // Check box name, caption and document kind, in the order of printing.
    struct TDocKind
    {
        const char *box;
        const char *caption;
        const char *kind;
    };
    static const TDocKind DocKinds[5];

private:
    TFrameTable m_frames;
    TFilterTable m_filters;
};
