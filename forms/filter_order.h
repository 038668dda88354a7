#pragma once
// The filter that the vehicles window sends to the orders journal through the main window.

#include <QString>

struct TFilterOrder
{
    // Day counts of the period, as dates are held in the database.
    double DateUp = 0;
    double DateTo = 0;
    QString OState;
    QString Num;
    QString Cust;
    QString Reg;
    QString Mark;
    QString Model;
};

// The orders journal takes a filter from the main window: it writes the period into deUp and deTo, the
// texts in this order into lcbOStateMain, edNum, lcbCust, edReg, lcbMark and lcbModel, and then calls
// FilterChange with no sender.
class TOrderFilterTarget
{
public:
    virtual ~TOrderFilterTarget() = default;
    virtual void ApplyOrderFilter(const TFilterOrder &filter) = 0;
};
