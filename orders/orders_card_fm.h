#pragma once
// The card of one work order: number, dates, status, customer and vehicle in hand-laid boxes; the
// customer's parts, the services and the materials in three grids whose lines are stored at once;
// hours, counts and discounts typed in the grids' cells; the master and the discount applied to all
// services; the totals before and after discount. OK stores the order with its customer and vehicle.

#include "complex_fm.h"
#include "frame_settings.h"

#include <memory>

class QCheckBox;
class QGroupBox;
class QPushButton;
class TCurrencyEdit;
class TGridColumn;
class TGridFrame;
class TLookupComboBox;
namespace Ui {
class OrdersCardFM;
}

class TOrdersCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TOrdersCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent = nullptr);
    ~TOrdersCardFM() override;

    QCheckBox *cbPartsReturn;
    QGroupBox *cbMaster;
    TLookupComboBox *lcbMaster;
    QPushButton *btnDiscount;
    QPushButton *btnMaster;
    TCurrencyEdit *TCX_SUMM_BRUTTO;
    TCurrencyEdit *TCX_SUMM_NETTO;
    TGridFrame *frmOrdParts;
    TGridFrame *frmOrdServ;
    TGridFrame *frmOrdMat;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    // The journal's columns in its order, RETURNZP taken from cbPartsReturn.
    void CreateDataArray() override;
    // Saves only when one of the eight main editors holds a value.
    void actOKExecute(QObject *sender) override;

    void btnDiscountClick(QObject *sender);
    void btnMasterClick(QObject *sender);
    void frmOrdServGridViewEditValueChanged(QObject *sender, TGridColumn *item);
    void frmOrdMatGridViewEditValueChanged(QObject *sender, TGridColumn *item);
    // The two totals from the footer sums of both grids.
    void frmOrdServGridViewDataControllerSummaryAfterSummary(QObject *sender);
    void frmOrdServToolButton2Click(QObject *sender);
    void frmOrdMatToolButton2Click(QObject *sender);
    void frmOrdMatToolButton3Click(QObject *sender);
    void IDSTATUS_LKP_OSTATE_F_STATENAME_Change(QObject *sender);
    void DLG_IDCUST_Click(QObject *sender, int buttonIndex);

    // The order's number, read from the box ID.
    QVariant OrderId() const;

    static const QString DiscountQuestion;
    static const QString MasterQuestion;
    static const QString NoMasterText;
    // Footer sums: position 0 on SUMM0, 1 on SUMM.
    static const QString FooterFormat;

private:
    // A value typed in a line's cell, refused with a message when it is out of range.
    struct TCellRule
    {
        const char *field;
        double min;
        double max;
        const char *message;
    };
    static const TCellRule CellRules[];
    // The line's cell as a number; null counts as 0. Raises with a Russian text for a refused value.
    static double CellValue(TFIBDataSet *dataSet, const QString &field);
    // Posts the grid's row, runs `save` and refreshes; a refusal is reported and the stored values come back.
    void SaveLine(TGridFrame *frame, const std::function<void(TFIBDataSet *)> &save);
    void AddFooterSums(TGridFrame *frame);

    std::unique_ptr<Ui::OrdersCardFM> ui;
    TFrameTable m_frames;
    bool m_handlersSet = false;
};
