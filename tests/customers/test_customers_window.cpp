// The customers' journal with its filters and delete, and the customer's card with its orders and payments.

#include "window_fixture.h"

#include "cust_card_fm.h"
#include "cust_fm.h"

#include <QGroupBox>
#include <QTabWidget>

namespace {

class CustomersWindowTest : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        decoy = NewCustomer("Сидоров", "'222-22-22'", "'пр. Мира 1'");
        customers = Show<TCustFM>();
    }
    // Types into one filter, the others cleared, and gives the names listed then.
    QStringList Filtered(TTextEdit *TCustFM::*edit, const QString &text)
    {
        for (TTextEdit *each : {customers->edClientName, customers->edPhone, customers->edAddress, customers->edReg})
            each->clear();
        TypeText(customers->*edit, text);
        customers->FilterChange(); // clearing by hand would arm it too
        Settle();
        return Sorted(Column(customers->frmCust, "CUSTNAME"));
    }

    int decoy = 0;
    TCustFM *customers = nullptr;
};

TEST_F(CustomersWindowTest, ACustomerAddedThroughTheCardIsFoundByEachFilterAndANameStopsAtItsColumnsLength)
{
    OnCard(customers->frmCust->actAdd, {[](TCustomDictFM *card) {
        EXPECT_EQ(card->windowTitle(), "Новый клиент");
        Type(card, "TCXCUSTNAME", "Петров Пётр");
        Type(card, "TCXMOBI_PHONE", "8-900-111");
        Type(card, "TCXADDRESS", "ул. Ленина 5");
        card->AdvGlowButton1->click();
    }});
    const int id = Scalar("select ID from CUST where MOBI_PHONE = '8-900-111' and ADDRESS = 'ул. Ленина 5'").toInt();
    ASSERT_GT(id, 1);
    NewOrder(id, NewVehicle("А123ВС"));
    NewOrder(decoy, NewVehicle("Х999ХХ", 2, 2));
    const QStringList mine{"Петров Пётр"};
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "петров"), mine) << "lower case Cyrillic";
    EXPECT_EQ(Filtered(&TCustFM::edPhone, "8-900-111"), mine);
    EXPECT_EQ(Filtered(&TCustFM::edAddress, "ленина"), mine);
    EXPECT_EQ(Filtered(&TCustFM::edReg, "123в"), mine);
    customers->edReg->clear();
    for (const auto &[lookup, text] : {std::pair{customers->lcbModel, "Passat"}, {customers->lcbMark, "Volkswagen"}}) {
        Filter(lookup, text);
        EXPECT_EQ(Column(customers->frmCust, "CUSTNAME"), mine) << text;
        Filter(lookup, "");
    }
    EXPECT_EQ(Filtered(&TCustFM::edClientName, ""), QStringList({"Петров Пётр", "Сидоров"})) << "the shop never shows";

    // A name stops at its column's length and is stored whole.
    const QString name = "Жуков '%_" + QString(120, QChar(u'Ж')); // 129 characters for a column of 128
    OnCard(customers->frmCust->actAdd, {[&](TCustomDictFM *card) {
        Type(card, "TCXCUSTNAME", name);
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(dialogs.Shown.size(), 0) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(RowsIn(*dm, "select CUSTNAME from CUST where ID > 1 order by ID"), QStringList({"Сидоров", "Петров Пётр", name.left(128)}));
}

TEST_F(CustomersWindowTest, ThePhoneFilterIsThePatternTypedOtherFiltersTakePatternSignsAsTextAndACustomerInUseIsNotDeleted)
{
    NewCustomer("Петров", "'8-900-111'");
    const QStringList petrov{"Петров"};
    for (const auto &[typed, found] : {std::pair{"900", QStringList()}, {"8-900-111", petrov}, {"%900%", petrov},
                                       {"8-900-11_", petrov}, {"%22", QStringList{"Сидоров"}}, {"", QStringList{"Петров", "Сидоров"}}})
        EXPECT_EQ(Filtered(&TCustFM::edPhone, typed), found) << typed;

    // Pattern signs, quotes and Cyrillic in the other filters.
    Exec("delete from CUST where CUSTNAME = 'Петров'");
    for (const char *name : {"100% Авто", "O'Brien", "Иванов_Сын", "Ёлкин"})
        NewCustomer(name);
    const QStringList others{"100% Авто", "O'Brien", "Ёлкин", "Иванов_Сын"};
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "100%"), QStringList{"100% Авто"});
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "o'b"), QStringList{"O'Brien"});
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "в_с"), QStringList{"Иванов_Сын"});
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "ёлк"), QStringList{"Ёлкин"});
    EXPECT_EQ(Filtered(&TCustFM::edClientName, "%"), Sorted(others + QStringList{"Сидоров"}));
    // A null address or plate passes these filters.
    EXPECT_EQ(Filtered(&TCustFM::edAddress, "'; delete from CUST; --"), others);
    EXPECT_EQ(Filtered(&TCustFM::edReg, "_'%"), Sorted(others + QStringList{"Сидоров"}));
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Count("CUST"), 6);

    // Deleting a customer still in use is refused with the database's text.
    Filtered(&TCustFM::edClientName, "");
    const int ordered = NewCustomer("Заказчик"), payer = NewCustomer("Плательщик"), supplier = NewCustomer("Поставщик");
    NewOrder(ordered, NewVehicle("О001ОО"));
    Exec(QString("insert into PAY (PTYPE, PURPOSE, IDCUST, SUMM) values (1, 1, %1, 10)").arg(payer));
    Exec(QString("insert into STOREMAT (IDOTYPE, IDCUST) values (1, %1)").arg(supplier));
    customers->frmCust->actRefresh->Execute();
    for (const auto &[id, text] : {std::pair{ordered, "Имеются заказы по данному клиенту. Удаление запрещено"},
                                   {payer, "Имеются платежи по данному клиенту. Удаление запрещено"},
                                   {supplier, "Имеются поставки по данному клиенту. Удаление запрещено"}}) {
        ASSERT_TRUE(dm->spCustOpen.Locate("ID", id));
        EXPECT_EQ(Delete(customers->frmCust), QStringList({"Вы уверены, что хотите удалить выбранного клиента?", QString(text) + "."}));
    }
    EXPECT_EQ(Count("CUST"), 9);
    ASSERT_TRUE(dm->spCustOpen.Locate("ID", decoy));
    customers->frmCust->actDel->Execute();
    EXPECT_EQ(Count("CUST"), 8) << "one not in use goes";

    // The card shows the customer's orders and payments, read-only, under Russian titles.
    const int mine = NewCustomer("Петров");
    const int order = NewOrder(mine, NewVehicle("А123ВС"));
    NewOrder(ordered, NewVehicle("В456ВВ"));
    Exec(QString("insert into PAY (PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM) values (1, 1, %1, %2, 100)").arg(order).arg(mine));
    customers->frmCust->actRefresh->Execute();
    ASSERT_TRUE(dm->spCustOpen.Locate("ID", mine));
    OnModal<TCustCardFM>(customers->frmCust->actEdit, {[&](TCustCardFM *card) {
        EXPECT_EQ(Column(card->frmOrders, "ID"), QStringList{QString::number(order)});
        EXPECT_EQ(Column(card->frmPayments, "SUMM"), QStringList{"100"});
        EXPECT_FALSE(card->frmPayments->GridView->FindColumnByFieldName("IDOBJ_LKP_OBJECT_F_OBJNAME")->Visible());
        for (TGridFrame *frame : {card->frmOrders, card->frmPayments}) {
            for (TAction *action : {frame->actAdd, frame->actEdit, frame->actDel})
                EXPECT_FALSE(action->isEnabled() || action->isVisible());
            EXPECT_EQ(Untitled(frame), QStringList());
        }
        EXPECT_EQ(card->pcInfo->currentIndex() + card->pcReferences->currentIndex(), 0);
        // Each field's box has the grid's title.
        QMap<QString, QString> boxes;
        for (QGroupBox *box : card->findChildren<QGroupBox *>())
            if (box->objectName() == box->objectName().toUpper())
                boxes[box->objectName()] = box->title();
        EXPECT_EQ(boxes.size(), 24);
        EXPECT_EQ(Untitled("CustFM.frmCust", boxes), QStringList());
        card->AdvGlowButton2->click();
    }});
    EXPECT_EQ(Untitled(customers->frmCust), QStringList());
}

} // namespace
