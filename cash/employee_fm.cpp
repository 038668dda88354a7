#include "employee_fm.h"

#include "data_dm.h"
#include "employee_card_fm.h"
#include "filter_panel.h"
#include "lookup_combo_box.h"
#include "text_editors.h"

TEmployeeFM::TEmployeeFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("EmployeeFM"), QStringLiteral("frmEmployee"), mainWindow, parent), frmEmployee(Frame)
{
    TDataDM &dm = *DataDM;
    const QString key = QStringLiteral("ID");
    edEmplName = gbFilter->AddText(QStringLiteral("edEmplName"), QStringLiteral("Сотрудник"));
    cbPosition = gbFilter->AddLookup(QStringLiteral("cbPosition"), QStringLiteral("Должность"), &dm.dsPosOpen, key,
                                     QStringLiteral("POSNAME"));
    cbStatus = gbFilter->AddLookup(QStringLiteral("cbStatus"), QStringLiteral("Статус"), &dm.dsEstatOpen, key,
                                   QStringLiteral("ESTNAME"));
    edAddress = gbFilter->AddText(QStringLiteral("edAddress"), QStringLiteral("Адрес"));
    edPhones = gbFilter->AddText(QStringLiteral("edPhones"), QStringLiteral("Телефоны"));
    Configure({nullptr, QStringLiteral("Сотрудники"), &dm.spEmplOpen, QStringLiteral("spEmpl"), CardOf<TEmployeeCardFM>(),
               QStringLiteral("spEmplEdit"), QStringLiteral("Новый сотрудник"), QStringLiteral("Редактировать сотрудника"),
               QStringLiteral("Вы уверены, что хотите удалить выбранного сотрудника?")},
              {{edEmplName, QStringLiteral("F_EMPLNAME")},
               {cbPosition, QStringLiteral("F_POS"), TFilterKind::Raw},
               {cbStatus, QStringLiteral("F_ESTAT"), TFilterKind::Raw},
               {edAddress, QStringLiteral("F_ADDRESS")},
               {edPhones, QStringLiteral("F_PHONES")}});
}

void TEmployeeFM::FormShow(QObject *sender)
{
    TListFM::FormShow(sender);
    for (TFIBDataSet *list : {&DataDM->spPosOpen, &DataDM->spEstatOpen}) {
        list->Close();
        list->Open();
    }
}
