// Two seats on one Firebird server, each with its own data module and journal of orders: an order saved
// through one seat's card is in the other's journal after a refresh, and a card saved while the other seat
// holds the order unsaved says so and keeps what was typed.

#include "orders_fixture.h"

#include "order_fm.h"
#include "orders_card_fm.h"
#include "server_seats.h"

namespace {

class Seats : public OrdersTest
{
protected:
    void SetUp() override
    {
        OrdersTest::SetUp();
        static int n = 0;
        WriteServerSettings(PrivateServer::Shared(), NewServerDatabase(QString("seats%1.fdb").arg(++n)));
        // The first copy deploys with dialogs of its own.
        dialogs.Install();
        for (auto *seat : {&a, &b}) {
            *seat = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
            ASSERT_TRUE((*seat)->ServerMode());
            ASSERT_TRUE((*seat)->pFIBDatabaseMain.Connected()) << dialogs.Texts().join('\n').toStdString();
        }
        ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
        order = NewOrderOnServer();
        for (auto [seat, journal] : {std::pair{a.get(), &journalA}, std::pair{b.get(), &journalB}}) {
            DataDM = seat;
            *journal = std::make_unique<TOrderFM>();
            (*journal)->show();
        }
    }

    void TearDown() override
    {
        journalA.reset();
        journalB.reset();
        b.reset();
        a.reset();
        DataDM = dm.get();
        OrdersTest::TearDown();
    }

    int NewOrderOnServer()
    {
        ExecIn(*a, "insert into CUST (CUSTNAME) values ('Орлов')");
        ExecIn(*a, "insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, 1, 1, 'О001ОО', 1)");
        ExecIn(*a, "insert into ORDERS (IDCUST, IDAUTO, IDSTATUS, CREATE_DATE, DEL) values ((select max(ID) from CUST), "
                   "(select max(ID) from AUTO), 1, cast('today' as date), 0)");
        return ScalarIn(*a, "select max(ID) from ORDERS").toInt();
    }
    // The order's status as the seat's journal shows it after a refresh.
    QString ShownStatus(TDataDM &seat, TOrderFM &journal)
    {
        DataDM = &seat;
        journal.frmOrders->actRefresh->Execute();
        const QStringList ids = Column(journal.frmOrders, "ID");
        return Column(journal.frmOrders, "IDSTATUS_LKP_OSTATE_F_STATENAME").value(int(ids.indexOf(QString::number(order))));
    }
    // Opens the order's card in the seat's journal; `step` acts on it.
    void OnOrderOf(TDataDM &seat, TOrderFM &journal, const std::function<void(TOrdersCardFM *)> &step)
    {
        DataDM = &seat;
        journal.frmOrders->actRefresh->Execute();
        ASSERT_TRUE(seat.spOrdersOpen.Locate("ID", order));
        OnModal<TOrdersCardFM>(journal.frmOrders->actEdit, {step});
    }

    std::unique_ptr<TDataDM> a, b;
    std::unique_ptr<TOrderFM> journalA, journalB;
    int order = 0;
};

} // namespace

TEST_F(Seats, AnOrderSavedOnOneSeatIsInTheOtherSeatsJournalAfterARefresh)
{
    EXPECT_EQ(ShownStatus(*b, *journalB), "1");
    OnOrderOf(*a, *journalA, [&](TOrdersCardFM *card) {
        Pick(Editor(card, "IDSTATUS_LKP_OSTATE_F_STATENAME"), ScalarIn(*a, "select STATENAME from OSTATE where ID = 2").toString());
        card->AdvGlowButton1->click();
    });
    EXPECT_EQ(ShownStatus(*b, *journalB), "2");
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(Seats, ACardSavedWhileTheOtherSeatHoldsTheOrderSaysSoAndKeepsWhatWasTyped)
{
    // Seat a changed the order and has not saved yet.
    a->pFIBTransaction1.CommitRetainingAfterWrite = false;
    ExecIn(*a, QString("update ORDERS set NUM = NUM where ID = %1").arg(order));
    const QString working = ScalarIn(*b, "select STATENAME from OSTATE where ID = 2").toString();
    OnOrderOf(*b, *journalB, [&](TOrdersCardFM *card) {
        QWidget *status = Editor(card, "IDSTATUS_LKP_OSTATE_F_STATENAME");
        Pick(status, working);
        card->AdvGlowButton1->click();
        QTest::qWait(50);
        EXPECT_EQ(dialogs.Texts(), QStringList{TpFibErrorHandler::LockConflictText});
        EXPECT_TRUE(card->isVisible());
        EXPECT_EQ(Line(status) ? Line(status)->text() : qobject_cast<QComboBox *>(status)->currentText(), working);
        EXPECT_EQ(ScalarIn(*a, QString("select IDSTATUS from ORDERS where ID = %1").arg(order)).toInt(), 1);

        // Once seat a has saved, the same OK goes through.
        a->pFIBTransaction1.CommitRetaining();
        dialogs.Clear();
        card->AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(ScalarIn(*a, QString("select IDSTATUS from ORDERS where ID = %1").arg(order)).toInt(), 2);
    EXPECT_EQ(ShownStatus(*a, *journalA), "2");
}
