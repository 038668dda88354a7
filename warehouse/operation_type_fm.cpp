#include "operation_type_fm.h"

#include "data_dm.h"
#include "dict_fm.h"

TOperationTypeFM::TOperationTypeFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("OperationTypeFM"), QStringLiteral("frmOperationType"), mainWindow, parent),
      frmOperationType(Frame)
{
    Configure({nullptr, QStringLiteral("Справочник складских операций"), &DataDM->spOTypeOpen, QStringLiteral("spOType"),
               CardOf<TDictFM>(), QStringLiteral("spOTypeEdit"), QStringLiteral("Новая складская операция"),
               QStringLiteral("Редактировать складскую операцию"),
               QStringLiteral("Вы уверены, что хотите удалить выбранную складскую операцию?")});
}
