// Two seats on one Firebird server, each with its own data module and journal of orders: a card saved
// while the other seat holds the order unsaved says so and keeps what was typed; saved at last, the
// order is in the other seat's journal after a refresh.

#include "window_fixture.h"

#include "order_fm.h"
#include "orders_card_fm.h"
#include "server_seats.h"

namespace {

class Seats : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        static int n = 0;
        WriteServerSettings(PrivateServer::Shared(), NewServerDatabase(QString("seats%1.fdb").arg(++n)));
        dialogs.Install(); // the first copy deploys with dialogs of its own
        for (auto *seat : {&a, &b}) {
            *seat = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
            ASSERT_TRUE((*seat)->ServerMode() && (*seat)->pFIBDatabaseMain.Connected()) << dialogs.Texts().join('\n').toStdString();
        }
        ASSERT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
        ExecIn(*a, "insert into CUST (CUSTNAME) values ('Орлов')");
        ExecIn(*a, "insert into AUTO (TYPE, MODNAME, MARK, REG, AYEAR) values (1, 1, 1, 'О001ОО', 1)");
        ExecIn(*a, "insert into ORDERS (IDCUST, IDAUTO, IDSTATUS, CREATE_DATE, DEL) values ((select max(ID) from CUST), "
                   "(select max(ID) from AUTO), 1, cast('today' as date), 0)");
        order = ScalarIn(*a, "select max(ID) from ORDERS").toInt();
        for (auto [seat, journal] : {std::pair{a.get(), &journalA}, std::pair{b.get(), &journalB}}) {
            DataDM = seat;
            *journal = std::make_unique<TOrderFM>();
            (*journal)->show();
        }
    }
    void TearDown() override
    {
        journalA.reset(), journalB.reset(), b.reset(), a.reset();
        DataDM = dm.get();
        WindowTest::TearDown();
    }
    // The order's status as the seat's journal shows it after a refresh.
    QString ShownStatus(TDataDM &seat, TOrderFM &journal)
    {
        DataDM = &seat;
        journal.frmOrders->actRefresh->Execute();
        const QStringList ids = Column(journal.frmOrders, "ID");
        return Column(journal.frmOrders, "IDSTATUS_LKP_OSTATE_F_STATENAME").value(int(ids.indexOf(QString::number(order))));
    }
    QString StoredStatus() { return ScalarIn(*a, QString("select IDSTATUS from ORDERS where ID = %1").arg(order)).toString(); }

    std::unique_ptr<TDataDM> a, b;
    std::unique_ptr<TOrderFM> journalA, journalB;
    int order = 0;
};

} // namespace

TEST_F(Seats, ACardSavedWhileTheOtherSeatHoldsTheOrderSaysSoKeepsWhatWasTypedAndGoesThroughOnceItIsSaved)
{
    EXPECT_EQ(ShownStatus(*a, *journalA), "1");
    // Seat a changed the order and has not saved yet.
    a->pFIBTransaction1.CommitRetainingAfterWrite = false;
    ExecIn(*a, QString("update ORDERS set NUM = NUM where ID = %1").arg(order));
    const QString working = ScalarIn(*b, "select STATENAME from OSTATE where ID = 2").toString();
    DataDM = b.get();
    journalB->frmOrders->actRefresh->Execute();
    ASSERT_TRUE(b->spOrdersOpen.Locate("ID", order));
    OnModal<TOrdersCardFM>(journalB->frmOrders->actEdit, {[&](TOrdersCardFM *card) {
        QWidget *status = Editor(card, "IDSTATUS_LKP_OSTATE_F_STATENAME");
        Pick(status, working);
        card->AdvGlowButton1->click();
        QTest::qWait(50);
        EXPECT_EQ(dialogs.Texts(), QStringList{TpFibErrorHandler::LockConflictText});
        EXPECT_TRUE(card->isVisible());
        EXPECT_EQ(Line(status) ? Line(status)->text() : qobject_cast<QComboBox *>(status)->currentText(), working);
        EXPECT_EQ(StoredStatus(), "1");

        // Once seat a has saved, the same OK goes through.
        a->pFIBTransaction1.CommitRetaining();
        dialogs.Clear();
        card->AdvGlowButton1->click();
    }});
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(StoredStatus(), "2");
    EXPECT_EQ(ShownStatus(*a, *journalA), "2");
}
