// The orders journal: its filters against the real procedure, one refresh on show, the debounce, a
// refused delete, the jump from the vehicles window through the main window, and printing.

#include "orders_fixture.h"

#include "auto_fm.h"
#include "choice_editors.h"
#include "date_edit.h"
#include "main_fm.h"
#include "order_fm.h"
#include "select_print_doc_fm.h"

#include <QCheckBox>
#include <QDateTime>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QToolButton>

namespace {

class OrderJournal : public OrdersTest
{
protected:
    void SetUp() override
    {
        OrdersTest::SetUp();
        Exec("delete from ORDERS");
        ivanov = NewCustomer("Иванов");
        petrov = NewCustomer("Пётр O'Нил");
        passat = NewVehicle("А123ВС77", 1, 1);
        octavia = NewVehicle("К456МН99", 2, 2);
        fresh = NewOrder(ivanov, passat, 1);
        working = NewOrder(petrov, octavia, 2);
        closed = NewOrder(ivanov, octavia, 6);
        old = NewOrder(ivanov, passat, 1, "cast('today' as date) - 40");
        deleted = NewOrder(petrov, passat, 3, "cast('today' as date)", 1);
        bare = NewOrder(0, 0, 5);
        Exec("update ORDERS set NUM = 'Н-50%_\"x' where ID = " + QString::number(working));
        dm->pFIBTransaction1.CommitRetaining();
    }

    TOrderFM *Journal()
    {
        auto *w = Show<TOrderFM>();
        Settle();
        return w;
    }
    static QList<int> Ids(TOrderFM *w)
    {
        QList<int> ids;
        for (const QString &id : Column(w->frmOrders, "ID"))
            ids << id.toInt();
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    static void PickKey(TLookupComboBox *lookup, const QVariant &key)
    {
        const int index = key.isNull() ? -1 : lookup->findData(key);
        ASSERT_TRUE(key.isNull() || index >= 0) << key.toString().toStdString();
        lookup->setCurrentIndex(index);
        emit lookup->activated(index);
    }

    int ivanov = 0, petrov = 0, passat = 0, octavia = 0;
    int fresh = 0, working = 0, closed = 0, old = 0, deleted = 0, bare = 0;
};

TEST_F(OrderJournal, ShowListsTheLastThirtyDaysOfLiveOrdersAndRefreshesOnceAsDoKeystrokesWithinTheInterval)
{
    int opens = 0;
    QObject::connect(&dm->spOrdersOpen, &TFIBDataSet::Opened, [&] { ++opens; });
    TOrderFM *w = Journal();
    EXPECT_EQ(opens, 1) << "setting the period on show fires no timer";
    EXPECT_FALSE(w->tmrFilter->isActive());
    EXPECT_EQ(Ids(w), QList<int>({fresh, working, closed, bare}));
    EXPECT_EQ(w->deUp->dateTime().date(), QDate::currentDate().addDays(-30));
    EXPECT_EQ(w->deTo->dateTime().date(), QDate::currentDate());
    EXPECT_EQ(w->lcbOStateMain->itemText(0), "-Активен-") << "filter rows first";
    EXPECT_EQ(w->frmOrders->gbGrid->title(), "Заказы");
    ExpectRussianTitles(w->frmOrders);

    TFIBDataSet &ds = dm->spOrdersOpen;
    w->FillParameters(&ds);
    EXPECT_EQ(ds.ParamByName("F_NUM").AsString() + ds.ParamByName("F_REG").AsString(), "%%%%") << "empty text wrapped, never null";
    for (const char *name : {"F_IDORDER", "F_IDOSTATE", "F_IDCUST", "F_IDMARK", "F_IDMODEL"})
        EXPECT_TRUE(ds.ParamByName(name).IsNull()) << name;
    EXPECT_EQ(ds.ParamByName("F_DEL").AsInteger(), 0);
    EXPECT_EQ(ds.ParamByName("F_DATE_TO").AsDateTime(), QDateTime(QDate::currentDate(), QTime(0, 0))) << "truncated to its day";

    for (const QString &typed : {"К", "К4", "К45"}) {
        TypeText(w->edReg, typed);
        QTest::qWait(30);
    }
    EXPECT_EQ(opens, 1);
    Settle();
    EXPECT_EQ(opens, 2);
    EXPECT_EQ(Ids(w), QList<int>({working, closed, bare}));
}

TEST_F(OrderJournal, FiltersNarrowTheListAsTheProcedureDoes)
{
    TOrderFM *w = Journal();
    struct Case
    {
        const char *what;
        std::function<void()> set;
        std::function<QList<int>()> expected;
    };
    const QList<Case> cases = {
        {"status '-Активен-' is every status below 6", [&] { PickKey(w->lcbOStateMain, 7); },
         [&] { return QList<int>{fresh, working, bare}; }},
        {"one status, and the order with none", [&] { PickKey(w->lcbOStateMain, 2); },
         [&] { return QList<int>{working}; }},
        {"status cleared is all", [&] { PickKey(w->lcbOStateMain, QVariant()); },
         [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"customer, and orders without one", [&] { PickKey(w->lcbCust, petrov); },
         [&] { return QList<int>{working, bare}; }},
        {"customer cleared", [&] { PickKey(w->lcbCust, QVariant()); },
         [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"plate contains", [&] { Filter(w->edReg, "456"); }, [&] { return QList<int>{working, closed, bare}; }},
        {"plate in Cyrillic", [&] { Filter(w->edReg, "А123"); }, [&] { return QList<int>{fresh, bare}; }},
        {"plate with a quote", [&] { Filter(w->edReg, "'"); }, [&] { return QList<int>{bare}; }},
        {"plate cleared", [&] { Filter(w->edReg, ""); }, [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"number with % and _ taken as patterns", [&] { Filter(w->edNum, "50%_\""); },
         [&] { return QList<int>{working}; }},
        {"number matching nothing", [&] { Filter(w->edNum, "Я_нет"); }, [&] { return QList<int>{}; }},
        {"number cleared", [&] { Filter(w->edNum, ""); }, [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"make", [&] { PickKey(w->lcbMark, 2); }, [&] { return QList<int>{working, closed, bare}; }},
        {"model on top", [&] { PickKey(w->lcbModel, 1); }, [&] { return QList<int>{bare}; }},
        {"lookups cleared", [&] { PickKey(w->lcbMark, QVariant()), PickKey(w->lcbModel, QVariant()); },
         [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"deleted only with 'Удаленные'", [&] { w->cbDel->click(); }, [&] { return QList<int>{deleted}; }},
        {"live again", [&] { w->cbDel->click(); }, [&] { return QList<int>{fresh, working, closed, bare}; }},
        {"the period takes in older orders",
         [&] { w->deUp->setDateTime(QDateTime::currentDateTime().addDays(-45)); },
         [&] { return QList<int>{fresh, working, closed, old, bare}; }},
        {"the last day counts whole",
         [&] { w->deTo->setDateTime(QDateTime(QDate::currentDate().addDays(-40), QTime(0, 0))); },
         [&] { return QList<int>{old}; }},
    };
    for (const Case &c : cases) {
        c.set();
        Settle();
        EXPECT_EQ(Ids(w), c.expected()) << c.what;
    }
    EXPECT_EQ(dialogs.Shown.size(), 0);
}

TEST_F(OrderJournal, ARefusedDeleteShowsTheDatabasesText)
{
    Exec(QString("insert into PAY (PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM) values (1, 1, %1, %2, 100)")
             .arg(working)
             .arg(petrov));
    dm->pFIBTransaction1.CommitRetaining();
    TOrderFM *w = Journal();
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", working));
    dialogs.Answer(Dialogs::ResultOk);
    w->frmOrders->actDel->Execute();
    ASSERT_EQ(dialogs.Shown.size(), 2);
    EXPECT_EQ(dialogs.Shown[0].text, "Вы уверены, что хотите удалить выбранный заказ?");
    EXPECT_TRUE(dialogs.Shown[1].text.contains("Имеются платежи по данному заказу. Удаление запрещено"))
        << dialogs.Shown[1].text.toStdString();
    EXPECT_EQ(Scalar("select count(*) from ORDERS where ID = " + QString::number(working)).toInt(), 1);

    // A new order is deleted outright.
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", fresh));
    w->frmOrders->actDel->Execute();
    EXPECT_EQ(Scalar("select count(*) from ORDERS where ID = " + QString::number(fresh)).toInt(), 0);
    EXPECT_FALSE(Ids(w).contains(fresh));
}

TEST_F(OrderJournal, PrintReportsEachTickedKindInOrder)
{
    TOrderFM *w = Journal();
    struct Case
    {
        const char *what;
        QList<int> ticks; // check boxes to toggle, 1-based
        bool ok;
        QStringList expected;
    };
    // The order has no lines: each kind chosen says so once.
    const QString noLines = "В данном заказе отсутствуют предоставленные услуги и материалы";
    const QList<Case> cases = {
        {"only the request is ticked at start", {}, true, {noLines}},
        {"all five", {2, 3, 4, 5}, true, {noLines, noLines, noLines, noLines, noLines}},
        {"none ticked", {1}, true, {}},
        {"cancel", {2}, false, {}},
    };
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", fresh));
    for (const Case &c : cases) {
        dialogs.Shown.clear();
        ModalDriver driver;
        driver.Then([&](QWidget *modal) {
            auto *dialog = qobject_cast<TSelectPrintDocFM *>(modal);
            ASSERT_NE(dialog, nullptr);
            EXPECT_EQ(CardTexts(dialog), QStringList{"Выберите необходимые документы"});
            for (int box : c.ticks)
                dialog->findChild<QCheckBox *>(QString("cxCheckBox%1").arg(box))->toggle();
            (c.ok ? dialog->AdvGlowButton1 : dialog->AdvGlowButton2)->click();
        });
        w->actPrint->Execute();
        EXPECT_EQ(dialogs.Texts(), c.expected) << c.what;
    }

    // An order without a customer, then an empty journal.
    dialogs.Shown.clear();
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", bare));
    ModalDriver driver;
    driver.Then([](QWidget *modal) { static_cast<TSelectPrintDocFM *>(modal)->AdvGlowButton1->click(); });
    w->actPrint->Execute();
    Filter(w->edNum, "нет такого");
    ASSERT_TRUE(dm->spOrdersOpen.IsEmpty());
    driver.Then([](QWidget *modal) {
        auto *dialog = static_cast<TSelectPrintDocFM *>(modal);
        dialog->cxCheckBox3->setChecked(true);
        dialog->AdvGlowButton1->click();
    });
    w->actPrint->Execute();
    EXPECT_EQ(dialogs.Texts(), QStringList({"В данном заказе отсутствует заказчик(клиент)", "Необходимо выбрать заказ",
                                  "Необходимо выбрать заказ"}));
}

TEST_F(OrderJournal, TheVehiclesWindowJumpsHereFilteredByThePlate)
{
    const int ancient = NewOrder(ivanov, octavia, 6, "cast('today' as date) - 400");
    dm->pFIBTransaction1.CommitRetaining();
    TMainFM main({"kelvarion"});
    main.show();
    ASSERT_TRUE(main.actShowOrder->isEnabled());
    main.actShowAuto->Execute();
    auto *vehicles = dynamic_cast<TAutoFM *>(main.MDIClient->activeSubWindow()->widget());
    ASSERT_NE(vehicles, nullptr);
    ASSERT_TRUE(dm->spAutoOpen.Locate("ID", octavia));
    vehicles->miShowOrdersClick(nullptr);
    auto *journal = dynamic_cast<TOrderFM *>(main.MDIClient->activeSubWindow()->widget());
    ASSERT_NE(journal, nullptr);
    EXPECT_EQ(journal->edReg->text(), "К456МН99");
    EXPECT_TRUE(journal->tmrFilter->isActive());
    Settle();
    EXPECT_EQ(Ids(journal), QList<int>({working, closed, bare, ancient})) << "every live order with that plate, and the bare one";

    // A second jump reuses the open journal.
    ASSERT_TRUE(dm->spAutoOpen.Locate("ID", passat));
    vehicles->miShowOrdersClick(nullptr);
    Settle();
    int journals = 0;
    for (QMdiSubWindow *sub : main.MDIClient->subWindowList())
        journals += !sub->isHidden() && dynamic_cast<TOrderFM *>(sub->widget());
    EXPECT_EQ(journals, 1);
    EXPECT_EQ(Ids(journal), QList<int>({fresh, old, bare}));
    main.close();
}

} // namespace
