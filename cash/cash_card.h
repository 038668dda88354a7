#pragma once
// What the cash journal and the payroll share: the period box of their filters and the card of a money
// operation, which refuses a sum or a counterparty that makes no sense before anything is stored.

#include "complex_fm.h"

class QGroupBox;
class TDateEdit;

// The group "За период" with the editors deUp and deTo.
QGroupBox *NewPeriodBox(QWidget *parent, TDateEdit *&up, TDateEdit *&to);

class TMoneyCardFM : public TComplexFM
{
    Q_OBJECT
public:
    using TComplexFM::TComplexFM;

    // Larger sums are typing errors: the database's 32-bit float would not even keep their kopecks.
    static constexpr double MaxSum = 100000000;
    static const QString SumText;

    // Empty when the sum is a number above 0 and not above MaxSum, else what the user is told.
    static QString SumRefusal(const QVariant &sum);
    // Empty when the card may be saved, else what the user is told.
    virtual QString Refusal() = 0;

    // A refused card is not saved and stays open.
    void actOKExecute(QObject *sender) override;
    // Cancel with unsaved changes asks, as every card does; a refused card is then kept open, not saved.
    void FormCloseQuery(QObject *sender, bool &canClose) override;

protected:
    // The first child of the box named like the field.
    QWidget *BoxEditor(const QString &field) const;
    // The value of that editor, invalid without one.
    QVariant BoxValue(const QString &field) const;
    // Shows `value` in the box's editor and writes it into the row as a user's change would.
    void SetBoxValue(const QString &field, const QVariant &value);
    // Overwrites the array's value of the grid's column `field`, when the grid has it.
    void SetArrayValue(const QString &field, const QVariant &value);

private:
    void Refuse(const QString &text);
};
