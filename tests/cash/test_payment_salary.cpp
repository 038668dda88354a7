// The cash journal and its card, which keeps purpose, customer, object and sum in step and refuses
// what it cannot store; the payroll journal and its card, which follows the debts list.

#include "window_fixture.h"

#include "cash_card.h"
#include "date_edit.h"
#include "payment_card_fm.h"
#include "payment_fm.h"
#include "salary_card_fm.h"
#include "salary_fm.h"

#include <QPushButton>

namespace {

class CashJournals : public WindowTest
{
protected:
    // Clears the editor as a user would, then types.
    static void Retype(QWidget *editor, const QString &text)
    {
        QLineEdit *line = Line(editor);
        ASSERT_NE(line, nullptr);
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Backspace);
        TypeText(line, text);
    }
    // An open order of `customer` with that sum.
    int OrderOf(int customer, double sum)
    {
        return Insert(QString("insert into ORDERS (IDCUST, IDSTATUS, CREATE_DATE, SUMORDER) values (%1, 1, 'today', %2)")
                          .arg(customer).arg(sum));
    }
    // Payments not marked as deleted and what `order` has been paid, as text, for seeing that nothing changed.
    QString Payments(int order)
    {
        const QString paid = "select coalesce(cast(SUMPAY as integer), -1) || ':' || PAYSTATE from ORDERS where ID = %1";
        return RowsIn(*dm, "select ID, PTYPE, PURPOSE, IDCUST, IDOBJECT, SUMM from PAY where coalesce(DEL, 0) = 0").join(' ') + " / "
               + Scalar(paid.arg(order)).toString();
    }
};

TEST_F(CashJournals, APaymentFollowsItsCustomerOrObjectRefusedOrCancelledCardsKeepNothingAndThePayoutCardFollowsTheDebts)
{
    const int ivanov = NewCustomer("Иванов И."), petrov = NewCustomer("Петров П.");
    const int single = OrderOf(ivanov, 1500), other = OrderOf(petrov, 700);
    OrderOf(petrov, 300);
    auto *journal = Show<TPaymentFM>();
    EXPECT_EQ(journal->lcbType->findText("Расход"), 1);
    EXPECT_EQ(journal->lcbNal->findText("Наличный"), 1);

    OnModal<TPaymentCardFM>(journal->frmPayments->actAdd, {[&](TPaymentCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая кассовая операция");
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        EXPECT_TRUE(card->btnPrixod->isChecked() && !card->btnRasxod->isChecked());
        EXPECT_EQ(Value(card, TPaymentCardFM::PurposeField), 1) << "the one purpose of money in";
        EXPECT_TRUE(Value(card, TPaymentCardFM::ObjectField).isNull()) << "three open orders";
        Pick(Editor(card, TPaymentCardFM::CustomerField), "Иванов И.");
        EXPECT_EQ(Value(card, TPaymentCardFM::ObjectField), single);
        EXPECT_EQ(Value(card, "SUMM").toDouble(), 1500);
        Retype(Editor(card, "SUMM"), "1000");
        card->AdvGlowButton1->click();
    }});
    EXPECT_TRUE(Payments(single).endsWith(" / 1000:2")) << Payments(single).toStdString();
    EXPECT_EQ(Column(journal->frmPayments, "SUMM"), QStringList({"1000"}));
    ExpectRussianTitles(journal->frmPayments);
    EXPECT_FALSE(journal->frmPayments->GridView->FindColumnByFieldName(TPaymentFM::ObjectField)->Visible());
    // Parameters no filter sets are cleared at each refresh.
    for (const char *stale : {"F_OBJ", "F_SUMM"})
        dm->spPayOpen.ParamByName(stale).SetValue(1);
    journal->frmPayments->actRefresh->Execute();
    EXPECT_TRUE(dm->spPayOpen.ParamByName("F_OBJ").AsVariant().isNull());
    EXPECT_TRUE(dm->spPayOpen.ParamByName("F_SUMM").AsVariant().isNull());
    const QString stored = Payments(single);

    // With nothing chosen, and then with sums out of range, OK is refused. An object chosen brings its
    // customer; "Расход" then takes its only purpose. Cancel keeps nothing; "Удаленные" shows its blank row.
    OnModal<TPaymentCardFM>(journal->frmPayments->actAdd, {[&](TPaymentCardFM *card) {
        Retype(Editor(card, "SUMM"), "100");
        card->AdvGlowButton1->click();
        Pick(Editor(card, TPaymentCardFM::ObjectField), "P-" + QString::number(80000 + other));
        EXPECT_EQ(Value(card, TPaymentCardFM::CustomerField), petrov);
        for (const QString sum : {"-5", "0", "1000000000000", "abc"}) { // letters do not get in: the sum stays empty
            Retype(Editor(card, "SUMM"), sum);
            card->AdvGlowButton1->click();
        }
        card->btnRasxod->click();
        EXPECT_FALSE(card->btnPrixod->isChecked());
        EXPECT_EQ(Value(card, TPaymentCardFM::PurposeField), 2);
        dialogs.Answer(Dialogs::ResultCancel); // to "save?"
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(dialogs.Texts(), QStringList{TPaymentCardFM::NoCounterpartyText} + QStringList(4, TMoneyCardFM::SumText)
                                   + QStringList{TCustomDictFM::SaveQuestion});
    EXPECT_EQ(Payments(single), stored);
    journal->cbDel->click();
    Settle();
    EXPECT_EQ(Column(journal->frmPayments, "SUMM"), QStringList{QString()});

    // The payout card follows the debts until typed over, and lets go when closed.
    dialogs.Clear();
    const int order = NewOrder(NewCustomer("Сидоров С."), 0), service = NewService("Диагностика", 1000, 1);
    for (const char *employee : {"'Соколов Д.', 30", "'Кузнецов А.', 10", "'Новиков Б.', 10"})
        Exec(QString("insert into EMPLS (EMPLNAME, PERCSERV) values (%1)").arg(employee));
    Exec(QString("insert into ORDSERV (IDORDER, IDSERV, IDEMPL) select %1, %2, ID from EMPLS where EMPLNAME <> 'Новиков Б.'")
             .arg(order).arg(service));
    Exec(QString("update ORDERS set IDSTATUS = 6 where ID = %1").arg(order));
    auto *payroll = Show<TSalaryFM>();
    ExpectRussianTitles(payroll->frmSalary);

    // Employee and sum of a row of the debts list, and those the card shows.
    TFIBDataSet &debts = dm->spSalaryMain;
    const auto pair = [](const QVariant &employee, const QVariant &sum) { return employee.toString() + "=" + sum.toString(); };
    const auto at = [&](int row, const QString &field) { return debts.RowValue(row, debts.FieldByName(field)->Index()); };
    const auto debt = [&](int row) { return pair(at(row, TSalaryCardFM::EmployeeField), at(row, "SUMM")); };
    const auto shown = [&](QWidget *card) { return pair(Value(card, TSalaryCardFM::EmployeeField), Value(card, "SUMM")); };
    OnModal<TSalaryCardFM>(payroll->frmSalary->actAdd, {[&](TSalaryCardFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новая операция");
        EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
        ExpectRussianTitles(card->frmEmpl);
        EXPECT_FALSE(card->frmEmpl->actAdd->isEnabled());
        EXPECT_EQ(Sorted(Column(card->frmEmpl, "SUMM")), QStringList({"0", "100", "300"})) << "the debts of this month";
        EXPECT_EQ(shown(card), debt(0));
        card->frmEmpl->GridView->SetFocusedRowIndex(1);
        EXPECT_EQ(shown(card), debt(1));
        Retype(Editor(card, "SUMM"), "55");
        card->frmEmpl->GridView->SetFocusedRowIndex(0);
        EXPECT_EQ(shown(card), debt(0));
        card->frmEmpl->GridView->SetFocusedRowIndex(1);
        Retype(Editor(card, "SUMM"), "55");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(RowsIn(*dm, "select IDEMPL, SUMM from SALARY"), QStringList({debt(1).section('=', 0, 0) + "|55"}));
    // The closed card no longer follows the list.
    ASSERT_FALSE(debts.AfterScroll);

    // A period with no work: the debt is 0, which is no payout; the list's copy left nothing unsaved.
    OnModal<TSalaryCardFM>(payroll->frmSalary->actAdd, {[&](TSalaryCardFM *card) {
        card->deTo->setDate(QDate::currentDate().addYears(-1));
        card->deUp->setDate(QDate::currentDate().addYears(-2));
        Settle();
        EXPECT_EQ(Value(card, "SUMM").toDouble(), 0);
        card->AdvGlowButton1->click();
    }, [](TSalaryCardFM *card) { card->AdvGlowButton2->click(); }});
    EXPECT_EQ(dialogs.Texts(), QStringList({TMoneyCardFM::SumText}));
    EXPECT_EQ(Count("SALARY"), 1);
}

} // namespace
