#pragma once
// The card of one payout: the employee and the sum come from the row chosen in the list of what each
// employee is owed for a period of the card's own, and may then be changed by hand.

#include "cash_card.h"
#include "filter_table.h"
#include "frame_settings.h"

#include <memory>

class TDateEdit;
class TGridFrame;
namespace Ui {
class SalaryCardFM;
}

class TSalaryCardFM : public TMoneyCardFM
{
    Q_OBJECT
public:
    TSalaryCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                  QWidget *parent = nullptr);
    // The shared debts list outlives the card: its after-scroll event is taken back.
    ~TSalaryCardFM() override;

    TGridFrame *frmEmpl;
    TDateEdit *deUp;
    TDateEdit *deTo;

    void FormCreate(QObject *sender) override;
    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    // Copies the employee and the debt of the scrolled row into the card's row.
    void spSalaryMainAfterScroll(TFIBDataSet *dataSet);
    // The list's refresh makes one copy, not one per row it passes.
    void frmEmplRefresh(QObject *sender);
    // The employee and the sum as their editors hold them.
    void CreateDataArray() override;
    QString Refusal() override;

    static const QString EmployeeField;
    static const QString NoEmployeeText;

private:
    std::unique_ptr<Ui::SalaryCardFM> ui;
    TFrameTable m_frames;
    TFilterTable m_filters;
};
