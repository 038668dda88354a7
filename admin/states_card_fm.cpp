#include "states_card_fm.h"

#include "card_check.h"

const QString TStatesCardFM::NoNameText = QStringLiteral("Не указано наименование статуса!");
const QString TStatesCardFM::SaveErrorCaption = QStringLiteral("Ошибка сохранения статуса");

TStatesCardFM::TStatesCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                             QWidget *parent)
    : TDictFM(gridView, namePrefix, procName, parent)
{
    setObjectName(QStringLiteral("StatesCardFM"));
}

void TStatesCardFM::actOKExecute(QObject *sender)
{
    SetModalResult(mrNone);
    if (TCardCheck(SaveErrorCaption).HasText(findChild<QWidget *>(QStringLiteral("STATENAME_TCX")), NoNameText))
        SetModalResult(mrOk);
    TDictFM::actOKExecute(sender);
}
