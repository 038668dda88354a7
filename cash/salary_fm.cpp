#include "salary_fm.h"

#include "cash_card.h"
#include "data_dm.h"
#include "date_edit.h"
#include "filter_panel.h"
#include "grid_frame.h"
#include "salary_card_fm.h"
#include "text_editors.h"

#include <QGroupBox>
#include <QHBoxLayout>

TSalaryFM::TSalaryFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("SalaryFM"), QStringLiteral("frmSalary"), mainWindow, parent), frmSalary(Frame)
{
    auto *row = static_cast<QHBoxLayout *>(gbFilter->layout());
    row->insertWidget(0, NewPeriodBox(gbFilter, deUp, deTo));
    auto *gbEmpl = new QGroupBox(QStringLiteral("Сотрудник"), gbFilter);
    gbEmpl->setObjectName(QStringLiteral("gbEmpl"));
    auto *empl = new QHBoxLayout(gbEmpl);
    empl->setContentsMargins(6, 4, 6, 6);
    edEmplName = new TTextEdit(gbEmpl);
    edEmplName->setObjectName(QStringLiteral("edEmplName"));
    edEmplName->setMinimumWidth(220);
    empl->addWidget(edEmplName);
    row->insertWidget(1, gbEmpl);

    // The parameter is spelled F_EMPLNANE in the procedure, and so here.
    m_salaryFilters = {{deUp, QStringLiteral("F_DATE_UP"), TFilterKind::Day},
                       {deTo, QStringLiteral("F_DATE_TO"), TFilterKind::Day},
                       {edEmplName, QStringLiteral("F_EMPLNANE"), TFilterKind::Contains}};
    TFrameSettings settings{nullptr, QStringLiteral("Выплаты"), &DataDM->spSalaryOpen, QStringLiteral("spSalary"),
                            CardOf<TSalaryCardFM>(), QStringLiteral("spSalaryEdit"), QStringLiteral("Новая операция"),
                            QStringLiteral("Редактировать операцию"),
                            QStringLiteral("Вы уверены, что хотите удалить выбранную операцию?")};
    // Bound here: the period's editors are not the filter panel's own.
    settings.FillParameters = [this](TFIBDataSet *dataSet) { m_salaryFilters.Fill(dataSet); };
    Configure(settings);
    gbFilter->setVisible(true);
    edEmplName->OnUserChange = [this] { FilterChange(); };
    setWindowTitle(QStringLiteral("Журнал з/п"));
}

void TSalaryFM::FormShow(QObject *sender)
{
    ShowLastDays(deUp, deTo, [this] { FilterChange(); });
    TListFM::FormShow(sender);
}
