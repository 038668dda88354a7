// The store journal and its card as a user drives them: a delivery of two materials and a write-off
// beyond the stock, the empty and the cancelled operation, refused input in the grid, prefix filters
// and Russian titles.

#include "catalogue_fixture.h"

#include "data_dm.h"
#include "date_edit.h"
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

    // Runs a journal action; `step` acts on the store card it opens.
    void OnStoreCard(TAction *action, const std::function<void(TStoreCardFM *)> &step)
    {
        ModalDriver driver;
        driver.Then([&](QWidget *modal) {
            auto *card = qobject_cast<TStoreCardFM *>(modal);
            ASSERT_NE(card, nullptr) << modal->objectName().toStdString();
            step(card);
        });
        action->Execute();
        EXPECT_EQ(driver.Ran(), 1);
        EXPECT_TRUE(driver.Failures.isEmpty()) << driver.Failures.join('\n').toStdString();
    }
    // Chooses the material in the picker that the add button of the card's grid opens.
    static void AddMaterial(TStoreCardFM *card, int material)
    {
        ModalDriver inner;
        inner.Then([material](QWidget *modal) {
            auto *picker = qobject_cast<TMaterialsDialogFM *>(modal);
            ASSERT_NE(picker, nullptr) << modal->objectName().toStdString();
            ASSERT_TRUE(picker->frmMaterials->DS->DataSet()->Locate("ID", material));
            picker->AdvGlowButton1->click();
        });
        card->frmMaterials->ToolButton2->click();
        EXPECT_EQ(inner.Ran(), 1);
    }
    // Types into a cell of the line of `material` and, when `enter`, presses Enter in its editor.
    static void TypeCell(TStoreCardFM *card, int material, const QString &field, const QString &text, bool enter = true)
    {
        TDBGridView *view = card->frmMaterials->GridView;
        const int row = int(Column(card->frmMaterials, "SYS_IDMAT").indexOf(QString::number(material)));
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
        if (enter)
            QTest::keyClick(editor, Qt::Key_Return);
        else
            QTest::keyClick(editor, Qt::Key_Tab);
        QTest::qWait(50);
    }
    void PickType(TStoreCardFM *card, int type)
    {
        Pick(Editor(card, "IDOTYPE_LKP_OTYPE_F_OTYPENAME"), Scalar(QString("select OTYPENAME from OTYPE where ID = %1").arg(type)).toString());
    }
    int Stock(int material) { return Scalar(QString("select QUANTITY from MAT where ID = %1").arg(material)).toInt(); }
    QStringList Lines()
    {
        return RowsIn(*dm, "select IDMAT, QUANTITY, PRICEBUY, PRICESELL, coalesce(DEL, 0) from STORE order by ID");
    }

    TStoreFM *journal = nullptr;
    int valve = 0, weight = 0;
};

TEST_F(StoreTest, ADeliveryOfTwoMaterialsRaisesStockAndAWriteOffBeyondItIsRefused)
{
    OnStoreCard(journal->frmStore->actAdd, [&](TStoreCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая операция");
        PickType(card, 1);
        AddMaterial(card, valve);
        // The head is written with the first line, before OK.
        EXPECT_EQ(Scalar("select count(*) from STOREMAT where IDOTYPE = 1").toInt(), 1);
        TypeCell(card, valve, "QUANTITY", "10");
        EXPECT_TRUE(card->isVisible()) << "Enter in the grid pressed OK";
        EXPECT_EQ(Stock(valve), 10);
        TypeCell(card, valve, "PRICEBUY", "50");
        TypeCell(card, valve, "PRICESELL", QLocale().toString(80.5));
        AddMaterial(card, weight);
        EXPECT_EQ(Column(card->frmMaterials, "MATNAME"), QStringList({"Вентиль TR413", "Груз балансировочный 10 г"}));
        // Typed and left without Enter: OK posts it.
        TypeCell(card, weight, "QUANTITY", "4", false);
        EXPECT_EQ(Stock(weight), 0);
        card->AdvGlowButton1->click();
    });
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(Stock(valve), 10);
    EXPECT_EQ(Stock(weight), 4);
    EXPECT_EQ(Lines(), QStringList({QString("%1|10|50|80.5|0").arg(valve), QString("%1|4|||0").arg(weight)}));
    EXPECT_EQ(Sorted(Column(journal->frmStore, "IDMAT_LKP_MAT_F_MATNAME")), Sorted({QString::number(valve), QString::number(weight)}));

    // A write-off of more than is in stock: the database's refusal, the stock stays.
    OnStoreCard(journal->frmStore->actAdd, [&](TStoreCardFM *card) {
        PickType(card, 3);
        AddMaterial(card, valve);
        TypeCell(card, valve, "QUANTITY", "12");
        EXPECT_EQ(dialogs.Texts().replaceInStrings(QRegularExpression("^\\s+|\\s+$"), ""),
                  QStringList({"На складе недостаточно данного материала."}));
        TypeCell(card, valve, "QUANTITY", "3");
        card->AdvGlowButton1->click();
    });
    EXPECT_EQ(Stock(valve), 7);
}

TEST_F(StoreTest, AnEmptyOperationCannotBeConfirmedAndNoWayOutLeavesABlankLine)
{
    const int lines = Count("STORE");
    OnStoreCard(journal->frmStore->actAdd, [&](TStoreCardFM *card) {
        card->AdvGlowButton1->click();
        QTest::qWait(50);
        EXPECT_TRUE(card->isVisible());
        ASSERT_EQ(dialogs.Shown.size(), 1);
        EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
        EXPECT_EQ(dialogs.Shown[0].text, "Поставка не может быть пустой. Необходимо добавить товары");
        EXPECT_EQ(dialogs.Shown[0].caption, "Ошибка");
        card->AdvGlowButton2->click();
    });
    EXPECT_EQ(Count("STORE"), lines);
    // Closed by its window's close box after a material was chosen and left without a quantity.
    OnStoreCard(journal->frmStore->actAdd, [&](TStoreCardFM *card) {
        AddMaterial(card, valve);
        card->close();
    });
    EXPECT_EQ(Scalar("select count(*) from STORE where coalesce(IDMAT, 0) = 0").toInt(), 0);
    EXPECT_EQ(Stock(valve), 0);
}

TEST_F(StoreTest, RefusedInputInTheGridLeavesTheStoredOperationAsItWas)
{
    Exec("insert into STOREMAT (IDOTYPE) values (1)");
    Exec(QString("insert into STORE (IDSTOREMAT, IDMAT, QUANTITY, PRICEBUY, PRICESELL) "
                 "select max(ID), %1, 10, 50, 80 from STOREMAT").arg(valve));
    const QStringList lines = Lines();
    const struct
    {
        const char *field;
        QString text;
        QString message;
    } cases[] = {
        {"QUANTITY", "-5", "Количество должно быть числом больше 0 и не больше 1 000 000"},
        {"QUANTITY", "0", "Количество должно быть числом больше 0 и не больше 1 000 000"},
        {"QUANTITY", "1000000000000", "Количество должно быть числом больше 0 и не больше 1 000 000"},
        {"QUANTITY", "abc", "Количество должно быть числом больше 0 и не больше 1 000 000"},
        {"PRICEBUY", "-1", "Цена закупки должна быть числом больше 0 и не больше 100 000 000"},
        {"PRICEBUY", "1e40", "Цена закупки должна быть числом больше 0 и не больше 100 000 000"},
        {"PRICESELL", "0", "Цена продажи должна быть числом больше 0 и не больше 100 000 000"},
        {"PRICESELL", "восемь", "Цена продажи должна быть числом больше 0 и не больше 100 000 000"},
    };
    journal->frmStore->actRefresh->Execute();
    OnStoreCard(journal->frmStore->actEdit, [&](TStoreCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Редактировать операцию");
        TDBGridView *view = card->frmMaterials->GridView;
        for (const auto &c : cases) {
            dialogs.Clear();
            // Put into the row as a cell would, whatever its editor lets through.
            view->model()->setData(view->model()->index(0, view->IndexOf(view->FindColumnByFieldName(c.field))), c.text,
                                   Qt::EditRole);
            QTest::qWait(30);
            card->PostLines();
            EXPECT_EQ(dialogs.Texts(), QStringList{c.message}) << c.field << " " << c.text.toStdString();
            EXPECT_EQ(Lines(), lines) << c.field << " " << c.text.toStdString();
        }
        dialogs.Clear();
        card->AdvGlowButton1->click();
    });
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(Lines(), lines);
    EXPECT_EQ(Stock(valve), 10);
}

TEST_F(StoreTest, TextFiltersArePrefixesAndTitlesAreRussian)
{
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Ниппель', 'N-12', '1200')");
    Exec("insert into MAT (MATNAME, ARTICUL, SCODE) values ('Колпачок ниппеля', 'K-12', '0120')");
    Exec("insert into STOREMAT (IDOTYPE) values (1)");
    Exec("insert into STORE (IDSTOREMAT, IDMAT) select max(s.ID), m.ID from STOREMAT s, MAT m group by m.ID");
    journal->frmStore->actRefresh->Execute();
    const QStringList all = Column(journal->frmStore, "ID");
    ASSERT_EQ(all.size(), 5);
    const struct
    {
        TTextEdit *editor;
        QString text;
        QStringList found;
    } cases[] = {
        {journal->edCode, "12", {"Ниппель"}},
        {journal->edArticul, "K-", {"Колпачок ниппеля"}},
        {journal->edName, "ниппел", {"Ниппель"}},
        {journal->edName, "%ниппел", {"Колпачок ниппеля", "Ниппель"}},
    };
    for (const auto &c : cases) {
        Filter(c.editor, c.text);
        QStringList found;
        for (const QString &id : Column(journal->frmStore, "IDMAT_LKP_MAT_F_MATNAME"))
            found << Scalar("select MATNAME from MAT where ID = " + id).toString();
        EXPECT_EQ(Sorted(found), Sorted(c.found)) << c.editor->objectName().toStdString() << " " << c.text.toStdString();
        Filter(c.editor, QString());
    }
    EXPECT_EQ(Column(journal->frmStore, "ID").size(), 5);

    ExpectRussianTitles(journal->frmStore);
    ASSERT_TRUE(dm->spStoreOpen.Locate("IDMAT_LKP_MAT_F_MATNAME", valve));
    OnStoreCard(journal->frmStore->actEdit, [&](TStoreCardFM *card) {
        ExpectRussianTitles(card->frmMaterials);
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        EXPECT_FALSE(card->frmMaterials->actEdit->isEnabled());
        card->AdvGlowButton2->click();
    });
}

} // namespace
