#include "salary_card_fm.h"

#include "app_exception.h"
#include "data_dm.h"
#include "date_edit.h"
#include "filter_panel.h"
#include "grid_frame.h"
#include "ui_salary_card_fm.h"

#include <QToolBar>

const QString TSalaryCardFM::EmployeeField = QStringLiteral("IDEMPL_LKP_EMPL_F_EMPLNAME");
const QString TSalaryCardFM::NoEmployeeText = QStringLiteral("Выберите сотрудника");

TSalaryCardFM::TSalaryCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TMoneyCardFM(QStringLiteral("SalaryCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::SalaryCardFM>())
{
    ui->setupUi(pnlMain);
    frmEmpl = ui->frmEmpl;
    frmEmpl->sToolBar1->addWidget(NewPeriodBox(frmEmpl, deUp, deTo));
    resize(760, 640);
    FormCreate(this);
}

TSalaryCardFM::~TSalaryCardFM()
{
    if (DataDM)
        DataDM->spSalaryMain.AfterScroll = nullptr;
}

void TSalaryCardFM::FormCreate(QObject *sender)
{
    TMoneyCardFM::FormCreate(sender);
    const int readOnly = faAdd | faEdit | faDel;
    m_frames = {{frmEmpl, QStringLiteral("Задолженность перед сотрудниками"), &DataDM->spSalaryMain, QString(), {},
                 QString(), QString(), QString(), QString(), readOnly}};
    m_frames.Apply();
    m_filters = {{deUp, QStringLiteral("F_DATE_UP"), TFilterKind::Day}, {deTo, QStringLiteral("F_DATE_TO"), TFilterKind::Day}};
    frmEmpl->OnFillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    frmEmpl->actRefresh->OnExecute = [this](QObject *s) { frmEmplRefresh(s); };
    FilterFrame = frmEmpl;
}

void TSalaryCardFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TSalaryCardFM::FormShow(QObject *sender)
{
    TMoneyCardFM::FormShow(sender);
    ShowLastDays(deUp, deTo, [this] { FilterChange(); });
    tmrFilterTimer(tmrFilter);
}

void TSalaryCardFM::frmEmplRefresh(QObject *sender)
{
    TFIBDataSet &debts = DataDM->spSalaryMain;
    debts.AfterScroll = nullptr;
    frmEmpl->actRefreshExecute(sender);
    spSalaryMainAfterScroll(&debts);
    debts.AfterScroll = [this](TFIBDataSet *dataSet) {
        // Scrolling is the grid's doing: a refused copy is told here, not thrown into it.
        try {
            spSalaryMainAfterScroll(dataSet);
        } catch (...) {
            HandleCurrentException();
        }
    };
}

void TSalaryCardFM::spSalaryMainAfterScroll(TFIBDataSet *dataSet)
{
    TFIBDataSet *card = DataSet();
    if (!card || !card->Active() || card->IsEmpty() || !dataSet->Active() || dataSet->IsEmpty())
        return;
    card->Edit();
    for (const QString &field : {EmployeeField, QStringLiteral("SUMM")})
        card->FieldByName(field)->SetValue(dataSet->FieldByName(field)->Value());
    card->Post();
}

void TSalaryCardFM::CreateDataArray()
{
    TMoneyCardFM::CreateDataArray();
    SetArrayValue(EmployeeField, BoxValue(EmployeeField));
    SetArrayValue(QStringLiteral("SUMM"), BoxValue(QStringLiteral("SUMM")));
}

QString TSalaryCardFM::Refusal()
{
    const QVariant employee = BoxValue(EmployeeField);
    if (!employee.isValid() || employee.isNull())
        return NoEmployeeText;
    return SumRefusal(BoxValue(QStringLiteral("SUMM")));
}
