#include "services_fm.h"

#include "data_dm.h"
#include "filter_panel.h"
#include "services_card_fm.h"
#include "text_editors.h"

TServicesFM::TServicesFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("ServicesFM"), QStringLiteral("frmServices"), mainWindow, parent), frmServices(Frame)
{
    edServName = gbFilter->AddText(QStringLiteral("edServName"), QStringLiteral("Наименование услуги"));
    edCategory = gbFilter->AddText(QStringLiteral("edCategory"), QStringLiteral("Категория услуг"));
    edArticul = gbFilter->AddText(QStringLiteral("edArticul"), QStringLiteral("Артикул"));
    edScode = gbFilter->AddText(QStringLiteral("edScode"), QStringLiteral("Код услуги"));
    Configure({nullptr, QStringLiteral("Справочник услуг"), &DataDM->spServOpen, QStringLiteral("spServ"),
               CardOf<TServicesCardFM>(), QStringLiteral("spServEdit"), QStringLiteral("Новая услуга"),
               QStringLiteral("Редактировать услугу"), QStringLiteral("Вы уверены, что хотите удалить выбранную услугу?")},
              {{edServName, QStringLiteral("F_SERVNAME")},
               {edCategory, QStringLiteral("F_CATEGORY")},
               {edArticul, QStringLiteral("F_SERVART")},
               {edScode, QStringLiteral("F_SERVCODE")}});
}
