#include "employee_card_fm.h"

#include "ui_employee_card_fm.h"

TEmployeeCardFM::TEmployeeCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                                 QWidget *parent)
    : TComplexFM(QStringLiteral("EmployeeCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::EmployeeCardFM>())
{
    ui->setupUi(pnlMain);
    resize(720, 520);
    FormCreate(this);
}

TEmployeeCardFM::~TEmployeeCardFM() = default;
