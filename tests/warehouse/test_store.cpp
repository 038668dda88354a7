// The store journal and its card as a user drives them: the empty operation refused, a delivery of two
// materials, a write-off beyond the stock, a card closed half filled; then prefix filters, Russian
// titles and the input the grid refuses, over the operations stored.

#include "catalogue_fixture.h"

#include "data_dm.h"
#include "materials_dialog_fm.h"
#include "store_card_fm.h"
#include "store_fm.h"

#include <QToolButton>

namespace {

class StoreTest : public CatalogueTest
{
protected:
    void SetUp() override
    {
        CatalogueTest::SetUp();
        valve = IdOf("MAT", "MATNAME", "Вентиль TR413");
        weight = IdOf("MAT", "MATNAME", "Груз балансировочный 10 г");
        journal = Show<TStoreFM>();
    }
    // Chooses the material in the picker that the add button of the card's grid opens.
    static void AddMaterial(TStoreCardFM *card, int material)
    {
        OnModal<TMaterialsDialogFM>([card] { card->frmMaterials->ToolButton2->click(); }, {[material](auto *picker) {
            ASSERT_TRUE(picker->frmMaterials->DS->DataSet()->Locate("ID", material));
            picker->AdvGlowButton1->click();
        }});
    }
    // Types into a cell of the line of `material`, leaving its editor by Enter or Tab.
    enum Leave { Enter, Tab };
    static void TypeCell(TStoreCardFM *card, int material, const QString &field, const QString &text, Leave leave = Enter)
    {
        TDBGridView *view = card->frmMaterials->GridView;
        const int row = RowOf(card->frmMaterials, {{"SYS_IDMAT", material}});
        const QModelIndex index = view->model()->index(row, view->IndexOf(view->FindColumnByFieldName(field)));
        ASSERT_TRUE(view->model()->flags(index) & Qt::ItemIsEditable) << field.toStdString();
        view->setCurrentIndex(index);
        view->edit(index);
        QLineEdit *editor = nullptr;
        for (QLineEdit *line : view->viewport()->findChildren<QLineEdit *>())
            editor = line->isVisible() ? line : editor;
        ASSERT_NE(editor, nullptr);
        editor->setFocus();
        TypeText(editor, text);
        QTest::keyClick(editor, leave == Enter ? Qt::Key_Return : Qt::Key_Tab);
        QTest::qWait(50);
    }
    int Stock(int material) { return Scalar(QString("select QUANTITY from MAT where ID = %1").arg(material)).toInt(); }
    // Operation type, material, quantity, prices and deletion mark of every line.
    QStringList Lines()
    {
        return RowsIn(*dm, "select h.IDOTYPE, s.IDMAT, s.QUANTITY, s.PRICEBUY, s.PRICESELL, coalesce(s.DEL, 0) "
                           "from STORE s join STOREMAT h on h.ID = s.IDSTOREMAT order by s.ID");
    }

    TStoreFM *journal = nullptr;
    int valve = 0, weight = 0;
};

TEST_F(StoreTest, OperationsTakeTheirLinesAsTypedAndAreFoundByPrefixesButNeverEmptyBlankOrRefusedInput)
{
    OnModal<TStoreCardFM>(journal->frmStore->actAdd, {[&](TStoreCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая операция");
        card->AdvGlowButton1->click();
        QTest::qWait(50);
        EXPECT_TRUE(card->isVisible()) << "an empty operation was confirmed";
        EXPECT_EQ(dialogs.Texts() + dialogs.Captions(),
                  QStringList({"Поставка не может быть пустой. Необходимо добавить товары", "Ошибка"}));
        EXPECT_EQ(dialogs.Shown.value(0).kind, Dialogs::Error);
        dialogs.Clear();
        Pick(Editor(card, "IDOTYPE_LKP_OTYPE_F_OTYPENAME"), "Приход");
        AddMaterial(card, valve);
        TypeCell(card, valve, "QUANTITY", "10");
        EXPECT_TRUE(card->isVisible()) << "Enter in the grid pressed OK";
        EXPECT_EQ(Stock(valve), 10);
        TypeCell(card, valve, "PRICEBUY", "50");
        TypeCell(card, valve, "PRICESELL", QLocale().toString(80.5));
        AddMaterial(card, weight);
        EXPECT_EQ(Column(card->frmMaterials, "MATNAME"), QStringList({"Вентиль TR413", "Груз балансировочный 10 г"}));
        TypeCell(card, weight, "QUANTITY", "4", Tab); // left without Enter: OK posts it
        EXPECT_EQ(Stock(weight), 0);
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(Lines(), QStringList({QString("1|%1|10|50|80.5|0").arg(valve), QString("1|%1|4|||0").arg(weight)}));
    const QString valveId = QString::number(valve), weightId = QString::number(weight);
    EXPECT_EQ(Sorted(Column(journal->frmStore, "IDMAT_LKP_MAT_F_MATNAME")), Sorted({valveId, weightId}));

    // A write-off of more than is in stock: the database's refusal, the stock stays.
    OnModal<TStoreCardFM>(journal->frmStore->actAdd, {[&](TStoreCardFM *card) {
        Pick(Editor(card, "IDOTYPE_LKP_OTYPE_F_OTYPENAME"), "Списание");
        AddMaterial(card, valve);
        TypeCell(card, valve, "QUANTITY", "12");
        EXPECT_EQ(dialogs.Texts().replaceInStrings(QRegularExpression("^\\s+|\\s+$"), ""),
                  QStringList({"На складе недостаточно данного материала."}));
        TypeCell(card, valve, "QUANTITY", "3");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(Stock(valve), 7);

    // Cancelled untouched, and closed by its window's close box after a material was chosen and left
    // without a quantity.
    OnModal<TStoreCardFM>(journal->frmStore->actAdd, {[](TStoreCardFM *card) { card->AdvGlowButton2->click(); }});
    OnModal<TStoreCardFM>(journal->frmStore->actAdd, {[&](TStoreCardFM *card) {
        AddMaterial(card, weight);
        card->close();
    }});
    EXPECT_EQ(Scalar("select count(*) from STORE where coalesce(IDMAT, 0) = 0").toInt(), 0);
    EXPECT_EQ(Stock(weight), 4);

    // The material's texts are prefixes; a "%" of the user's own looks inside.
    const struct { TTextEdit *editor; QString text; QStringList found; } filters[] = {
        {journal->edCode, "1", {}},                       {journal->edArticul, "BG", {weightId}},
        {journal->edName, "вентил", {valveId, valveId}},  {journal->edName, "балансир", {}},
        {journal->edName, "%балансир", {weightId}},
    };
    for (const auto &c : filters) {
        Filter(c.editor, c.text);
        EXPECT_EQ(Sorted(Column(journal->frmStore, "IDMAT_LKP_MAT_F_MATNAME")), c.found) << c.text.toStdString();
        Filter(c.editor, QString());
    }
    ExpectRussianTitles(journal->frmStore);

    const struct { const char *field; QStringList texts; QString message; } refused[] = {
        {"QUANTITY", {"-5", "0", "1000000000000", "abc"}, "Количество должно быть числом больше 0 и не больше 1 000 000"},
        {"PRICEBUY", {"-1", "1e40"}, "Цена закупки должна быть числом больше 0 и не больше 100 000 000"},
        {"PRICESELL", {"0", "восемь"}, "Цена продажи должна быть числом больше 0 и не больше 100 000 000"},
    };
    const QStringList lines = Lines();
    ASSERT_TRUE(dm->spStoreOpen.Locate("IDMAT_LKP_MAT_F_MATNAME", weight));
    OnModal<TStoreCardFM>(journal->frmStore->actEdit, {[&](TStoreCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Редактировать операцию");
        ExpectRussianTitles(card->frmMaterials);
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        EXPECT_FALSE(card->frmMaterials->actEdit->isEnabled());
        for (const auto &c : refused)
            for (const QString &text : c.texts) {
                dialogs.Clear();
                // Put into the row as the cell would, whatever its editor lets through.
                SetCell(card->frmMaterials, RowOf(card->frmMaterials, {{"SYS_IDMAT", valve}}), c.field, text);
                card->PostLines();
                EXPECT_EQ(dialogs.Texts(), QStringList{c.message}) << c.field << " " << text.toStdString();
            }
        dialogs.Clear();
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(Lines(), lines);
}

} // namespace
