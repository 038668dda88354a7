#include "discount_fm.h"

#include "data_dm.h"
#include "dict_fm.h"

TDiscountFM::TDiscountFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("DiscountFM"), QStringLiteral("frmDiscount"), mainWindow, parent), frmDiscount(Frame)
{
    Configure({nullptr, QStringLiteral("Справочник накопительных скидок"), &DataDM->spDiscountsOpen,
               QStringLiteral("spDiscounts"), CardOf<TDictFM>(), QStringLiteral("spDiscountsEdit"),
               QStringLiteral("Новый диапазон"), QStringLiteral("Редактировать диапазон"),
               QStringLiteral("Вы уверены, что хотите удалить выбранный диапазон?")});
}
