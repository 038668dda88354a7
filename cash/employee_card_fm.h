#pragma once
// The card of an employee: its hand-laid boxes, bound by name, are all that it is.

#include "complex_fm.h"

#include <memory>

namespace Ui {
class EmployeeCardFM;
}

class TEmployeeCardFM : public TComplexFM
{
    Q_OBJECT
public:
    TEmployeeCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                    QWidget *parent = nullptr);
    ~TEmployeeCardFM() override;

private:
    std::unique_ptr<Ui::EmployeeCardFM> ui;
};
