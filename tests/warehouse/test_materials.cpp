// The catalogue of materials and its card: quick-added lists, the stock that is not entered here, what
// is typed but not yet in the row, filters and bad input.

#include "catalogue_fixture.h"

#include "data_dm.h"
#include "materials_card_fm.h"
#include "materials_fm.h"
#include "text_editors.h"

namespace {

const QString category = "IDCMAT_LKP_CMAT_F_CMATNAME";
const QString producer = "IDPROD_LKP_PROD_F_PRODNAME";
const QString country = "IDCNTRY_LKP_CNTRY_F_CNTRYNAME";

class MaterialsTest : public CatalogueTest
{
protected:
    void SetUp() override
    {
        CatalogueTest::SetUp();
        materials = Show<TMaterialsFM>();
    }
    TMaterialsFM *materials = nullptr;
};

TEST_F(MaterialsTest, ANameTypedIntoAListIsAddedAtOnceAndOkTakesUpWhatIsTypedInTheOrderOfTheExitHandlersButNotTheStock)
{
    const struct { QString field, table, column; } lists[] = {
        {category, "CMAT", "CMATNAME"}, {producer, "PROD", "PRODNAME"}, {country, "CNTRY", "CNTRYNAME"}};
    const int materialsBefore = Count("MAT");
    for (const auto &list : lists) {
        const QString name = "Новое имя «" + list.table + "» 50%_'";
        dialogs.Answer(Dialogs::ResultCancel); // "save the changes?" at cancel
        OnCard(materials->frmMaterials->actAdd, {[&](TCustomDictFM *card) {
            TypeAndLeave(Editor(card, list.field), name);
            const int id = IdOf(list.table, list.column, name);
            ASSERT_GT(id, 0) << list.table.toStdString();
            EXPECT_EQ(dynamic_cast<TLookupComboBox *>(Editor(card, list.field))->EditValue().toInt(), id);
            card->AdvGlowButton2->click();
        }});
        EXPECT_EQ(Count(list.table + " where " + list.column + " = " + Quoted(name)), 1) << list.table.toStdString();
    }
    EXPECT_EQ(Count("MAT"), materialsBefore);
    EXPECT_EQ(dialogs.Texts(), QStringList(3, TCustomDictFM::SaveQuestion));

    // OK takes up what is typed, in the order of the exit handlers.
    dialogs.Clear();
    TFIBDataSet &ds = dm->spMatOpen;
    OnCard(materials->frmMaterials->actAdd, {[&](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новый материал");
        QWidget *quantity = Editor(card, "QUANTITY");
        ASSERT_NE(quantity, nullptr);
        EXPECT_TRUE(quantity->isVisibleTo(card) && !quantity->isEnabled());
        // Typed and posted: the row is in edit state before the others are typed.
        TypeText(Line(Editor(card, "ARTICUL")), "KV-1");
        TypeText(Line(Editor(card, category)), "Колпачки");
        TypeText(Line(Editor(card, producer)), "ООО Ниппель");
        TypeText(Line(Editor(card, country)), "Тайвань");
        // Shown in the editor but not yet in the row.
        Line(Editor(card, "MATNAME"))->setText("Колпачок вентиля");
        QStringList order;
        const auto c = QObject::connect(&ds, &TFIBDataSet::FieldChanged,
                                        [&](int field) { order << ds.Fields(field)->FieldName(); });
        card->AdvGlowButton1->click();
        QObject::disconnect(c);
        EXPECT_EQ(order, QStringList({category, producer, country, "MATNAME"}));
    }});
    EXPECT_EQ(RowsIn(*dm, "select c.CMATNAME, p.PRODNAME, n.CNTRYNAME from MAT m join CMAT c on c.ID = m.IDCMAT "
                          "join PROD p on p.ID = m.IDPROD join CNTRY n on n.ID = m.IDCNTRY "
                          "where m.MATNAME = 'Колпачок вентиля'"),
              QStringList({"Колпачки|ООО Ниппель|Тайвань"}));

    // The card saves the balance it was given, whatever is typed.
    const int valve = IdOf("MAT", "MATNAME", "Вентиль TR413");
    Exec(QString("update MAT set QUANTITY = 7 where ID = %1").arg(valve));
    materials->frmMaterials->actRefresh->Execute();
    ASSERT_TRUE(ds.Locate("ID", valve));
    OnCard(materials->frmMaterials->actEdit, {[](TCustomDictFM *card) {
        TypeText(Line(Editor(card, "QUANTITY")), "999");
        TypeText(Line(Editor(card, "MATNAME")), "Вентиль TR414");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, QString("select MATNAME, QUANTITY from MAT where ID = %1").arg(valve)),
              QStringList({"Вентиль TR414|7"}));
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(MaterialsTest, FiltersFindTheTextAnywhereOddTextBreaksNothingAndTooLongTextStopsAtTheColumn)
{
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Масло 100% синтетика', 'M-100', '0100')");
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Фильтр_масляный', 'F_1', '0200')");
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Свеча O''Neil', 'ON''1', '0300')");
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Смазка ЛИТОЛ', 'L-24', '0400')");
    materials->frmMaterials->actRefresh->Execute();
    const QStringList all = Column(materials->frmMaterials, "MATNAME");
    ASSERT_EQ(all.size(), 7);
    const TMaterialFilters &f = materials->Filters;
    const struct { TTextEdit *editor; QString text; QStringList found; } cases[] = {
        {f.edMatName, "100%", {"Масло 100% синтетика"}},  {f.edMatName, "р_м", {"Фильтр_масляный"}},
        {f.edMatName, "o'neil", {"Свеча O'Neil"}},        {f.edMatName, "литол", {"Смазка ЛИТОЛ"}},
        {f.edMatName, "Нет такого", {}},
        // A material without a category passes any category filter.
        {f.edCategory, "шины", {"Шина 195/65 R15", "Масло 100% синтетика", "Фильтр_масляный", "Свеча O'Neil", "Смазка ЛИТОЛ"}},
        {f.edArticul, "'; delete from MAT; --", {}},     {f.edArticul, "on'", {"Свеча O'Neil"}},
        {f.edScode, "0_0", all},                         {f.edScode, "%", all},
    };
    for (const auto &c : cases) {
        Filter(c.editor, c.text);
        EXPECT_EQ(Sorted(Column(materials->frmMaterials, "MATNAME")), Sorted(c.found))
            << c.editor->objectName().toStdString() << " " << c.text.toStdString();
        Filter(c.editor, QString());
    }
    EXPECT_EQ(Column(materials->frmMaterials, "MATNAME").size(), 7);
    EXPECT_EQ(Count("MAT"), 7);

    // Too long text stops at the column; nothing was said before.
    const QString tooLong = QString("Ж%_'").repeated(17); // 68 characters for columns of 64
    const int weight = IdOf("MAT", "MATNAME", "Груз балансировочный 10 г");
    materials->frmMaterials->actRefresh->Execute();
    ASSERT_TRUE(dm->spMatOpen.Locate("ID", weight));
    OnCard(materials->frmMaterials->actEdit, {[&](TCustomDictFM *card) {
        for (const QString field : {"MATNAME", "ARTICUL", "SCODE"}) {
            Line(Editor(card, field))->clear();
            TypeText(Line(Editor(card, field)), tooLong);
        }
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(dialogs.Shown.size(), 0) << dialogs.Texts().join('\n').toStdString();
    const QString cut = tooLong.left(64);
    EXPECT_EQ(RowsIn(*dm, QString("select MATNAME, ARTICUL, SCODE from MAT where ID = %1").arg(weight)),
              QStringList({cut + "|" + cut + "|" + cut}));
    // A quick-added name too long for its list: the message, and no row.
    const int before = Count("CMAT");
    dialogs.Clear();
    OnCard(materials->frmMaterials->actAdd, {[&](TCustomDictFM *card) {
        TypeAndLeave(Editor(card, category), tooLong);
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(Count("CMAT"), before);
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
}

} // namespace
