// The cash journal and its card, which keeps purpose, customer, object and sum in step; the payroll
// journal and its card, which follows the debts list; and the input both cards refuse.

#include "../orders/orders_fixture.h"

#include "cash_card.h"
#include "date_edit.h"
#include "payment_card_fm.h"
#include "payment_fm.h"
#include "salary_card_fm.h"
#include "salary_fm.h"

#include <QPushButton>

namespace {

class CashJournals : public OrdersTest
{
protected:
    static QVariant Value(QWidget *card, const QString &field)
    {
        auto *editor = dynamic_cast<TValueEditor *>(Editor(card, field));
        return editor ? editor->EditValue() : QVariant("<no editor>");
    }
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
        const int order = NewOrder(customer, 0);
        Exec(QString("update ORDERS set SUMORDER = %1 where ID = %2").arg(sum).arg(order));
        return order;
    }
    // Payments not marked as deleted, as text, for seeing that nothing changed.
    QString LivePayments()
    {
        return Scalar("select list(ID || ':' || PTYPE || ':' || PURPOSE || ':' || coalesce(IDCUST, '') || ':' || "
                      "coalesce(IDOBJECT, '') || ':' || SUMM, ' ') from PAY where coalesce(DEL, 0) = 0")
            .toString();
    }
    QString OrderPayment(int order)
    {
        return Scalar(QString("select coalesce(cast(SUMPAY as integer), -1) || ':' || PAYSTATE from ORDERS where ID = %1").arg(order))
            .toString();
    }
};

TEST_F(CashJournals, APaymentFollowsItsCustomerOrObjectAndMovesTheOrdersPaymentState)
{
    const int ivanov = NewCustomer("Иванов И.");
    const int petrov = NewCustomer("Петров П.");
    const int single = OrderOf(ivanov, 1500);
    const int other = OrderOf(petrov, 700);
    OrderOf(petrov, 300);
    auto *journal = Show<TPaymentFM>();
    EXPECT_EQ(journal->lcbType->findText("Расход"), 1);
    EXPECT_EQ(journal->lcbNal->findText("Наличный"), 1);

    OnCard(journal->frmPayments->actAdd, {[&](TCustomDictFM *card) {
               auto *payment = qobject_cast<TPaymentCardFM *>(card);
               ASSERT_NE(payment, nullptr);
               EXPECT_EQ(card->windowTitle(), "Новая кассовая операция");
               EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
               EXPECT_TRUE(payment->btnPrixod->isChecked());
               EXPECT_FALSE(payment->btnRasxod->isChecked());
               EXPECT_EQ(Value(card, TPaymentCardFM::PurposeField), 1) << "the one purpose of money in";
               EXPECT_TRUE(Value(card, TPaymentCardFM::ObjectField).isNull()) << "three open orders";
               Pick(Editor(card, TPaymentCardFM::CustomerField), "Иванов И.");
               EXPECT_EQ(Value(card, TPaymentCardFM::ObjectField), single);
               EXPECT_EQ(Value(card, "SUMM").toDouble(), 1500);
               Retype(Editor(card, "SUMM"), "1000");
               card->AdvGlowButton1->click();
           }});
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(OrderPayment(single), "1000:2");
    EXPECT_EQ(Column(journal->frmPayments, "SUMM"), QStringList({"1000"}));
    ExpectRussianTitles(journal->frmPayments);
    EXPECT_FALSE(journal->frmPayments->GridView->FindColumnByFieldName(TPaymentFM::ObjectField)->Visible());
    dm->spPayOpen.ParamByName("F_OBJ").SetValue(single);
    dm->spPayOpen.ParamByName("F_SUMM").SetValue(1);
    journal->frmPayments->actRefresh->Execute();
    EXPECT_TRUE(dm->spPayOpen.ParamByName("F_OBJ").AsVariant().isNull());
    EXPECT_TRUE(dm->spPayOpen.ParamByName("F_SUMM").AsVariant().isNull());
    const QString stored = LivePayments();

    // An object chosen brings its customer; "Расход" then takes its only purpose. Cancel keeps nothing.
    dialogs.Answer(Dialogs::ResultCancel);
    OnCard(journal->frmPayments->actAdd, {[&](TCustomDictFM *card) {
               auto *payment = qobject_cast<TPaymentCardFM *>(card);
               Pick(Editor(card, TPaymentCardFM::ObjectField), "P-" + QString::number(80000 + other));
               EXPECT_EQ(Value(card, TPaymentCardFM::CustomerField), petrov);
               payment->btnRasxod->click();
               EXPECT_FALSE(payment->btnPrixod->isChecked());
               EXPECT_EQ(payment->Direction, 2);
               EXPECT_EQ(Value(card, TPaymentCardFM::PurposeField), 2);
               card->AdvGlowButton2->click();
           }});
    EXPECT_EQ(dialogs.Texts(), QStringList({TCustomDictFM::SaveQuestion}));
    EXPECT_EQ(LivePayments(), stored);
    EXPECT_EQ(OrderPayment(single), "1000:2");
}

TEST_F(CashJournals, RefusedInputKeepsTheCardOpenAndStoredPaymentsAsTheyWere)
{
    const int ivanov = NewCustomer("Иванов И.");
    const int order = OrderOf(ivanov, 1500);
    OrderOf(NewCustomer("Петров П."), 700); // two open orders: nothing is chosen for the user
    Exec(QString("insert into PAY (PTYPE, PURPOSE, IDCUST, IDOBJECT, SUMM) values (1, 1, %1, %2, 500)").arg(ivanov).arg(order));
    const QString stored = LivePayments();
    auto *journal = Show<TPaymentFM>();
    const struct
    {
        bool customer;
        QString sum;
        QString message;
    } cases[] = {
        {true, "-5", TMoneyCardFM::SumText},
        {true, "0", TMoneyCardFM::SumText},
        {true, "1000000000000", TMoneyCardFM::SumText},
        {true, "abc", TMoneyCardFM::SumText}, // letters do not even get in: the sum stays empty
        {false, "100", TPaymentCardFM::NoCounterpartyText},
    };
    for (const auto &c : cases) {
        dialogs.Clear();
        dialogs.Answer(Dialogs::ResultOk);     // the refusal
        dialogs.Answer(Dialogs::ResultCancel); // "save?" on cancel
        OnCard(journal->frmPayments->actAdd, {[&](TCustomDictFM *card) {
                                                  if (c.customer)
                                                      Pick(Editor(card, TPaymentCardFM::CustomerField), "Иванов И.");
                                                  Retype(Editor(card, "SUMM"), c.sum);
                                                  card->AdvGlowButton1->click();
                                              },
                                              [](TCustomDictFM *card) { card->AdvGlowButton2->click(); }});
        EXPECT_EQ(dialogs.Texts(), QStringList({c.message, TCustomDictFM::SaveQuestion})) << c.sum.toStdString();
    }
    EXPECT_EQ(LivePayments(), stored);
    EXPECT_EQ(OrderPayment(order), "500:2");
    // The cancelled cards' blank rows are marked as deleted, and "Удаленные" shows them.
    journal->cbDel->click();
    Settle();
    EXPECT_EQ(Column(journal->frmPayments, "SUMM"), QStringList(std::size(cases), QString()));
}

TEST_F(CashJournals, ThePayoutCardFollowsTheDebtsUntilTypedOverAndLetsGoWhenClosed)
{
    const int sokolov = Insert("insert into EMPLS (EMPLNAME, PERCSERV) values ('Соколов Д.', 30)");
    const int kuznetsov = Insert("insert into EMPLS (EMPLNAME, PERCSERV) values ('Кузнецов А.', 10)");
    Insert("insert into EMPLS (EMPLNAME, PERCSERV) values ('Новиков Б.', 10)");
    const int order = NewOrder(NewCustomer("Иванов И."), 0);
    const int service = NewService("Диагностика", 1000, 1);
    for (int employee : {sokolov, kuznetsov})
        Exec(QString("insert into ORDSERV (IDORDER, IDSERV, IDEMPL) values (%1, %2, %3)").arg(order).arg(service).arg(employee));
    Exec(QString("update ORDERS set IDSTATUS = 6 where ID = %1").arg(order));
    auto *journal = Show<TSalaryFM>();
    ExpectRussianTitles(journal->frmSalary);

    TFIBDataSet &debts = dm->spSalaryMain;
    const auto debt = [&](int row, const QString &field) { return debts.RowValue(row, debts.FieldByName(field)->Index()); };
    const auto shows = [&](QWidget *card, int row) {
        EXPECT_EQ(Value(card, TSalaryCardFM::EmployeeField), debt(row, TSalaryCardFM::EmployeeField));
        EXPECT_EQ(Value(card, "SUMM").toDouble(), debt(row, "SUMM").toDouble());
    };
    OnCard(journal->frmSalary->actAdd, {[&](TCustomDictFM *card) {
               auto *payout = qobject_cast<TSalaryCardFM *>(card);
               ASSERT_NE(payout, nullptr);
               EXPECT_EQ(card->windowTitle(), "Новая операция");
               EXPECT_EQ(NotRussian(CardTexts(card)), QStringList());
               ExpectRussianTitles(payout->frmEmpl);
               EXPECT_FALSE(payout->frmEmpl->actAdd->isEnabled());
               debts.FetchAll();
               QStringList sums;
               for (int row = 0; row < debts.RecordCount(); ++row)
                   sums << debt(row, TSalaryCardFM::EmployeeField).toString() + "=" + debt(row, "SUMM").toString();
               EXPECT_EQ(Sorted(sums), Sorted({QString("%1=300").arg(sokolov), QString("%1=100").arg(kuznetsov),
                                               QString("%1=0").arg(kuznetsov + 1)}));
               shows(card, 0);
               payout->frmEmpl->GridView->SetFocusedRowIndex(1);
               shows(card, 1);
               Retype(Editor(card, "SUMM"), "55");
               payout->frmEmpl->GridView->SetFocusedRowIndex(0);
               shows(card, 0);
               payout->frmEmpl->GridView->SetFocusedRowIndex(1);
               Retype(Editor(card, "SUMM"), "55");
               card->AdvGlowButton1->click();
           }});
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(RowsIn(*dm, "select IDEMPL, SUMM from SALARY"),
              QStringList({debt(1, TSalaryCardFM::EmployeeField).toString() + "|55"}));

    // The closed card no longer follows the list.
    EXPECT_FALSE(debts.AfterScroll);
    const QStringList journalRow = {Column(journal->frmSalary, "IDEMPL_LKP_EMPL_F_EMPLNAME").join(','),
                                    Column(journal->frmSalary, "SUMM").join(',')};
    debts.MoveTo(0);
    EXPECT_EQ(QStringList({Column(journal->frmSalary, "IDEMPL_LKP_EMPL_F_EMPLNAME").join(','),
                           Column(journal->frmSalary, "SUMM").join(',')}),
              journalRow);

    // A period with no work: the debt is 0, which is no payout; the list's copy left nothing unsaved.
    OnCard(journal->frmSalary->actAdd, {[&](TCustomDictFM *card) {
                                            auto *payout = qobject_cast<TSalaryCardFM *>(card);
                                            payout->deTo->setDate(QDate::currentDate().addYears(-1));
                                            payout->deUp->setDate(QDate::currentDate().addYears(-2));
                                            Settle();
                                            EXPECT_EQ(Value(card, "SUMM").toDouble(), 0);
                                            card->AdvGlowButton1->click();
                                        },
                                        [](TCustomDictFM *card) { card->AdvGlowButton2->click(); }});
    EXPECT_EQ(dialogs.Texts(), QStringList({TMoneyCardFM::SumText}));
    EXPECT_EQ(Count("SALARY"), 1);
}

} // namespace
