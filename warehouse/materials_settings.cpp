#include "materials_settings.h"

#include "filter_panel.h"
#include "materials_card_fm.h"
#include "text_editors.h"

TMaterialFilters::TMaterialFilters(TFilterPanel *panel)
    : edMatName(panel->AddText(QStringLiteral("edMatName"), QStringLiteral("Наименование товара"))),
      edCategory(panel->AddText(QStringLiteral("edCategory"), QStringLiteral("Категория товаров"))),
      edArticul(panel->AddText(QStringLiteral("edArticul"), QStringLiteral("Артикул"))),
      edScode(panel->AddText(QStringLiteral("edScode"), QStringLiteral("Код товара"))),
      Table{{edMatName, QStringLiteral("F_MATNAME")},
            {edCategory, QStringLiteral("F_CATEGORY")},
            {edArticul, QStringLiteral("F_ARTICUL")},
            {edScode, QStringLiteral("F_SCODE")}}
{
}

TFrameSettings MaterialsFrameSettings(TFIBDataSet *dataSet)
{
    TFrameSettings settings;
    settings.Title = QStringLiteral("Справочник материалов");
    settings.DataSet = dataSet;
    settings.ProcPrefix = QStringLiteral("spMat");
    settings.MakeCard = CardOf<TMaterialsCardFM>();
    settings.SaveProc = QStringLiteral("spMatEdit");
    settings.AddCaption = QStringLiteral("Новый материал");
    settings.EditCaption = QStringLiteral("Редактировать материал");
    settings.DelPrompt = QStringLiteral("Вы уверены, что хотите удалить выбранный материал?");
    return settings;
}
