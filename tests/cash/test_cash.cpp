// The employees with their filters and card, and the discount ranges with their generated card.

#include "catalogue_fixture.h"

#include "data_dm.h"
#include "discount_fm.h"
#include "employee_fm.h"
#include "text_editors.h"

namespace {

using CashTest = CatalogueTest;

TEST_F(CashTest, AnEmployeeIsFoundByEachFilterSavedByItsCardAndKeptWithPayoutsAndADiscountRangeGoesThroughItsCard)
{
    Exec("insert into EMPLS (EMPLNAME, IDPOS, IDESTAT, ADDRESS, PHONES) values ('Петров П.', 2, 2, 'ул. Ленина, 5', '495-111')");
    Exec("insert into EMPLS (EMPLNAME, IDPOS, IDESTAT, ADDRESS, PHONES) "
         "values ('O''Brien_100%', 3, 1, 'пр. Мира 10%', '8-800')");
    auto *employees = Show<TEmployeeFM>();
    ASSERT_EQ(Column(employees->frmEmployee, "EMPLNAME").size(), 3);
    ExpectRussianTitles(employees->frmEmployee);
    const struct { QWidget *editor; QString value; QStringList found; } cases[] = {
        {employees->edEmplName, "петров", {"Петров П."}},   {employees->edEmplName, "o'brien", {"O'Brien_100%"}},
        {employees->edEmplName, "n_1", {"O'Brien_100%"}},    {employees->edEmplName, "0%", {"O'Brien_100%"}},
        {employees->edEmplName, "'); delete from EMPLS; --", {}},
        {employees->cbPosition, "Главный бухгалтер", {"Петров П."}}, {employees->cbStatus, "Активен", {"Соколов Д.", "O'Brien_100%"}},
        // An employee with no address passes every address filter.
        {employees->edAddress, "ЛЕНИНА", {"Соколов Д.", "Петров П."}},
        {employees->edAddress, "10%", {"Соколов Д.", "O'Brien_100%"}},
        {employees->edPhones, "926", {"Соколов Д."}},
        {employees->edPhones, "_-_", {"Соколов Д.", "Петров П.", "O'Brien_100%"}},
    };
    for (const auto &c : cases) {
        Filter(c.editor, c.value);
        EXPECT_EQ(Sorted(Column(employees->frmEmployee, "EMPLNAME")), Sorted(c.found))
            << c.editor->objectName().toStdString() << " " << c.value.toStdString();
        Filter(c.editor, QString());
    }
    EXPECT_EQ(Column(employees->frmEmployee, "EMPLNAME").size(), 3);

    // A position added elsewhere is in the list at the next show.
    Exec("insert into POSITS (POSNAME) values ('Автомеханик')");
    employees = Show<TEmployeeFM>();
    EXPECT_GE(employees->cbPosition->findText("Автомеханик"), 0);

    // The card saves by its boxes, texts cut at their columns; nothing was said before.
    const QString tooLong = QString("Ф'%_").repeated(33); // 132 characters for a column of 128
    OnCard(employees->frmEmployee->actAdd, {[&](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новый сотрудник");
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        EXPECT_FALSE(Editor(card, "SYS_CREATE_DATE")->isEnabled());
        TypeText(Line(Editor(card, "EMPLNAME")), tooLong);
        Pick(Editor(card, "IDPOS_LKP_POS_F_POSNAME"), "Менеджер");
        TypeText(Line(Editor(card, "PHONES")), "+7 (900) 100-00-00");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(dialogs.Shown.size(), 0) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(RowsIn(*dm, "select e.EMPLNAME, e.PHONES, p.POSNAME from EMPLS e join POSITS p on p.ID = e.IDPOS "
                          "where e.PHONES = '+7 (900) 100-00-00'"),
              QStringList({tooLong.left(128) + "|+7 (900) 100-00-00|Менеджер"}));
    EXPECT_EQ(Count("EMPLS"), 4);

    // An employee with payouts is not deleted.
    const int sokolov = IdOf("EMPLS", "EMPLNAME", "Соколов Д.");
    Exec(QString("insert into SALARY (IDEMPL, SUMM) values (%1, 1000)").arg(sokolov));
    employees->frmEmployee->actRefresh->Execute();
    ASSERT_TRUE(dm->spEmplOpen.Locate("ID", sokolov));
    EXPECT_EQ(Delete(employees->frmEmployee), QStringList({"Вы уверены, что хотите удалить выбранного сотрудника?",
                                                           "Имеются выплаты по данному сотруднику. Удаление запрещено."}));
    EXPECT_EQ(Count("EMPLS"), 4);

    // A discount range goes through the generated card and is deleted.
    auto *discounts = Show<TDiscountFM>();
    ExpectRussianTitles(discounts->frmDiscount);
    EXPECT_EQ(discounts->frmDiscount->RightsKey(), "DiscountFM.frmDiscount");
    OnCard(discounts->frmDiscount->actAdd, {[](TCustomDictFM *card) {
        EXPECT_EQ(card->objectName(), "frmDiscountDictFM");
        EXPECT_EQ(card->windowTitle(), "Новый диапазон");
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        for (const auto &[field, value] : {std::pair{"DFROM", "10000"}, {"DTO", "50000"}, {"DVALUE", "5"}}) {
            auto *edit = card->findChild<QLineEdit *>(QString(field) + "_TCX");
            ASSERT_NE(edit, nullptr) << field;
            TypeText(edit, value);
        }
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, "select DFROM, DTO, DVALUE from DISCOUNTS where DFROM = 10000"), QStringList({"10000|50000|5"}));
    ASSERT_TRUE(dm->spDiscountsOpen.Locate("DFROM", 10000));
    EXPECT_EQ(Delete(discounts->frmDiscount), QStringList({"Вы уверены, что хотите удалить выбранный диапазон?"}));
    EXPECT_EQ(Count("DISCOUNTS"), 3);
    EXPECT_EQ(discounts->frmDiscount->GridView->RowCount(), 3);
}

} // namespace
