#pragma once
// The payroll journal: payouts to employees in a period, found by the employee's name, and entered
// through the payout card with its list of what each employee is still owed.

#include "list_fm.h"

class TDateEdit;
class TTextEdit;

class TSalaryFM : public TListFM
{
    Q_OBJECT
public:
    explicit TSalaryFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmSalary;
    TDateEdit *deUp;
    TDateEdit *deTo;
    TTextEdit *edEmplName;

    void FormShow(QObject *sender) override;

private:
    TFilterTable m_salaryFilters;
};
