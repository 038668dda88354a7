// The picker of materials, the services with their quick-added category, the operation types, and what
// all catalogue windows share: Russian titles, rights, and deletes the database refuses.

#include "catalogue_fixture.h"

#include "data_dm.h"
#include "list_fm.h"
#include "materials_dialog_fm.h"
#include "materials_fm.h"
#include "operation_type_fm.h"
#include "services_fm.h"
#include "text_editors.h"

namespace {

using CataloguesTest = CatalogueTest;

// What the read-only role may do in these windows is held by the day's suite, over every window.
TEST_F(CataloguesTest, EachWindowHasRussianTitlesAndItsRightsRegisteredAServiceTakesANewCategoryAtOnceAndARowInUseIsNotDeleted)
{
    const struct { std::function<TListFM *()> show; QString key, title, card; } windows[] = {
        {[this] { return Show<TMaterialsFM>(); }, "MaterialsFM.frmMaterials", "Справочник материалов", "MaterialsCardFM"},
        {[this] { return Show<TServicesFM>(); }, "ServicesFM.frmServices", "Справочник услуг", "ServicesCardFM"},
        {[this] { return Show<TOperationTypeFM>(); }, "OperationTypeFM.frmOperationType", "Справочник складских операций",
         "frmOperationTypeDictFM"},
    };
    for (const auto &w : windows) {
        TGridFrame *frame = w.show()->Frame;
        EXPECT_EQ(frame->RightsKey(), w.key);
        ExpectRussianTitles(frame);
        EXPECT_GT(frame->GridView->RowCount(), 0) << w.key.toStdString();
        EXPECT_EQ(Scalar("select ACTNAME from ACTIONS where TACTION = '" + w.key + "'").toString(), w.title);
        EXPECT_TRUE(frame->actAdd->isEnabled() && frame->actEdit->isEnabled() && frame->actDel->isEnabled());
        OnCard(frame->actEdit, {[&](TCustomDictFM *card) {
            EXPECT_EQ(card->objectName(), w.card);
            EXPECT_GT(CardTexts(card).size(), 2) << w.card.toStdString();
            EXPECT_EQ(NotRussian(CardTexts(card)), QStringList()) << w.card.toStdString();
            card->AdvGlowButton2->click();
        }});
    }

    // A service takes a new category at once and keeps it after Cancel.
    auto *services = Show<TServicesFM>();
    const QString field = "IDCSERV_LKP_CSERV_F_CSERVNAME";
    dialogs.Answer(Dialogs::ResultCancel); // "save the changes?" at cancel
    OnCard(services->frmServices->actAdd, {[&](TCustomDictFM *card) {
        TypeAndLeave(Editor(card, field), "Ходовая часть");
        EXPECT_EQ(Count("CSERV"), 3);
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(Scalar("select count(*) from CSERV where CSERVNAME = 'Ходовая часть'").toInt(), 1);
    EXPECT_EQ(Count("SERV"), 2);

    OnCard(services->frmServices->actAdd, {[&](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая услуга");
        TypeText(Line(Editor(card, "SERVNAME")), "Развал-схождение");
        TypeText(Line(Editor(card, "SERVART")), "RS_01'");
        TypeAndLeave(Editor(card, field), "Ходовая часть");
        TypeAndLeave(Editor(card, field), "Диагностика");
        card->AdvGlowButton1->click();
    }});
    // Quick add with a category chosen renames that category: the key goes first to the procedure.
    EXPECT_EQ(RowsIn(*dm, "select s.SERVART, c.CSERVNAME from SERV s join CSERV c on c.ID = s.IDCSERV "
                          "where s.SERVNAME = 'Развал-схождение'"),
              QStringList({"RS_01'|Диагностика"}));
    EXPECT_EQ(Count("CSERV"), 3);

    Filter(services->edCategory, "диагн");
    EXPECT_EQ(Column(services->frmServices, "SERVNAME"), QStringList({"Развал-схождение"}));
    Filter(services->edArticul, "_01'");
    EXPECT_EQ(Column(services->frmServices, "SERVNAME"), QStringList({"Развал-схождение"}));
    EXPECT_EQ(dialogs.Texts(), QStringList({TCustomDictFM::SaveQuestion}));

    // A row still in use is not deleted, and the database says why.
    const int valve = IdOf("MAT", "MATNAME", "Вентиль TR413");
    const int balancing = IdOf("SERV", "SERVNAME", "Балансировка колеса");
    Exec("insert into STOREMAT (ID, IDOTYPE, IDCUST) values (900, 1, 1)");
    Exec(QString("insert into STORE (IDSTOREMAT, IDMAT, QUANTITY) values (900, %1, 1)").arg(valve));
    Exec("insert into STOREMAT (ID, IDOTYPE, IDCUST) values (901, 3, 1)");
    Exec("insert into ORDERS (ID, IDCUST) values (900, 1)");
    Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (900, %1)").arg(balancing));
    const struct { std::function<TListFM *()> show; QString table; int id; QString prompt, refusal; } cases[] = {
        {[this] { return Show<TOperationTypeFM>(); }, "OTYPE", 3,
         "Вы уверены, что хотите удалить выбранную складскую операцию?",
         "Имеются поставки с данным типом складской операции. Удаление запрещено"},
        {[this] { return Show<TMaterialsFM>(); }, "MAT", valve, "Вы уверены, что хотите удалить выбранный материал?",
         "Имеются поставки данного товара. Удаление запрещено"},
        {[this] { return Show<TServicesFM>(); }, "SERV", balancing, "Вы уверены, что хотите удалить выбранную услугу?",
         "Имеются заказы включающие данную услугу. Удаление запрещено"},
    };
    for (const auto &c : cases) {
        TGridFrame *frame = c.show()->Frame;
        const int rows = frame->GridView->RowCount();
        const int before = Count(c.table);
        ASSERT_TRUE(frame->DS->DataSet()->Locate("ID", c.id));
        EXPECT_EQ(Delete(frame), QStringList({c.prompt, c.refusal + "."}));
        EXPECT_EQ(Count(c.table), before);
        EXPECT_EQ(frame->GridView->RowCount(), rows);
    }
}

TEST_F(CataloguesTest, ThePickerAddsAMaterialThatTheCatalogueShowsTooAndHandsBackTheChosenOneOrNothing)
{
    auto *catalogue = Show<TMaterialsFM>();
    std::unique_ptr<QWidget> keep = std::move(window);
    TMaterialsDialogFM picker;
    const qint32 chosenBefore = dm->ChosenMaterialId;
    OnModal<TMaterialsDialogFM>([&] { EXPECT_TRUE(picker.Execute()); }, {[&](TMaterialsDialogFM *) {
        EXPECT_EQ(picker.windowTitle(), "Диалог выбора материала");
        ExpectRussianTitles(picker.frmMaterials);
        EXPECT_EQ(picker.frmMaterials->GridView->RowCount(), 3);
        EXPECT_FALSE(picker.frmMaterials->actEdit->isEnabled());
        OnCard(picker.frmMaterials->actAdd, {[](TCustomDictFM *card) {
            EXPECT_EQ(card->windowTitle(), "Новый материал");
            TypeText(Line(Editor(card, "MATNAME")), "Ниппель");
            card->AdvGlowButton1->click();
        }});
        EXPECT_TRUE(Column(catalogue->frmMaterials, "MATNAME").contains("Ниппель"));
        EXPECT_EQ(picker.frmMaterials->GridView->RowCount(), 4);
        ASSERT_TRUE(dm->spMatDialog.Locate("MATNAME", "Ниппель"));
        picker.frmMaterials->GridViewDblClick(picker.frmMaterials->GridView);
    }});
    EXPECT_EQ(picker.ChosenId, IdOf("MAT", "MATNAME", "Ниппель"));
    EXPECT_EQ(dm->ChosenMaterialId, chosenBefore) << "the store card sets it, not the picker";

    // An empty catalogue, or a filter that matches nothing: a double click chooses nothing.
    Exec("delete from MAT");
    for (const QString filter : {"", "%'_нет"}) {
        TMaterialsDialogFM empty;
        empty.ChosenId = -1;
        OnModal<TMaterialsDialogFM>([&] { EXPECT_TRUE(empty.Execute()); }, {[&](TMaterialsDialogFM *) {
            if (!filter.isEmpty())
                Filter(empty.Filters.edMatName, filter);
            EXPECT_EQ(empty.frmMaterials->GridView->RowCount(), 0);
            empty.frmMaterials->GridViewDblClick(empty.frmMaterials->GridView);
        }});
        EXPECT_EQ(empty.ChosenId, 0);
    }
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

} // namespace
