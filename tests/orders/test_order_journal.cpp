// The orders journal: its filters against the real procedure, one refresh on show, the debounce, a
// refused delete, the jump from the vehicles window through the main window, and printing.

#include "window_fixture.h"

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

class OrderJournal : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
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

TEST_F(OrderJournal, ShowListsTheLastThirtyDaysOfLiveOrdersRefreshesOnceAsKeysComeDeletesOnlyUnpaidOnesAndTheVehiclesWindowJumpsHere)
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

    // A paid order is not deleted, and the database says why; one without payments goes at once.
    Exec(QString("insert into PAY (PTYPE, PURPOSE, IDOBJECT, IDCUST, SUMM) values (1, 1, %1, %2, 100)").arg(working).arg(petrov));
    dm->pFIBTransaction1.CommitRetaining();
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", working));
    EXPECT_EQ(Delete(w->frmOrders), QStringList({"Вы уверены, что хотите удалить выбранный заказ?",
                                                 "Имеются платежи по данному заказу. Удаление запрещено."}));
    EXPECT_EQ(Count("ORDERS where ID = " + QString::number(working)), 1);
    Filter(w->edReg, "");
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", fresh));
    w->frmOrders->actDel->Execute();
    EXPECT_EQ(Count("ORDERS where ID = " + QString::number(fresh)), 0);
    EXPECT_EQ(Ids(w), QList<int>({working, closed, bare}));

    // The vehicles window jumps here through the main window, filtered by the plate.
    window.reset();
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
    EXPECT_EQ(Ids(journal), QList<int>({old, bare})) << "the order deleted above is gone";
    main.close();
}

TEST_F(OrderJournal, PrintReportsEachTickedKindInOrderAndFiltersNarrowTheListAsTheProcedureDoes)
{
    TOrderFM *w = Journal();
    // The order (0: the journal filtered empty), the check boxes to toggle (1-based), OK or Cancel, what is
    // said. The first order has no lines: each kind chosen says so once.
    const QString noLines = "В данном заказе отсутствуют предоставленные услуги и материалы", none = "Необходимо выбрать заказ";
    const struct { const char *what; int order; QList<int> ticks; bool ok; QStringList expected; } cases[] = {
        {"only the request is ticked at start", fresh, {}, true, {noLines}},
        {"all five", fresh, {2, 3, 4, 5}, true, QStringList(5, noLines)},
        {"none ticked", fresh, {1}, true, {}},
        {"cancel", fresh, {2}, false, {}},
        {"an order without a customer", bare, {}, true, {"В данном заказе отсутствует заказчик(клиент)"}},
        {"an empty journal", 0, {3}, true, {none, none}},
    };
    for (const auto &c : cases) {
        dialogs.Shown.clear();
        if (c.order)
            ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", c.order));
        else
            Filter(w->edNum, "нет такого");
        OnModal<TSelectPrintDocFM>(w->actPrint, {[&](TSelectPrintDocFM *dialog) {
            EXPECT_EQ(CardTexts(dialog), QStringList{"Выберите необходимые документы"});
            for (int box : c.ticks)
                dialog->findChild<QCheckBox *>(QString("cxCheckBox%1").arg(box))->toggle();
            (c.ok ? dialog->AdvGlowButton1 : dialog->AdvGlowButton2)->click();
        }});
        EXPECT_EQ(dialogs.Texts(), c.expected) << c.what;
    }

    // The filters, from the journal as it was shown.
    Filter(w->edNum, "");
    dialogs.Shown.clear();
    const QList<int> all = {fresh, working, closed, bare};
    const struct { const char *what; std::function<void()> set; QList<int> expected; } filters[] = {
        {"status '-Активен-' is every status below 6", [&] { PickKey(w->lcbOStateMain, 7); }, {fresh, working, bare}},
        {"one status, and the order with none", [&] { PickKey(w->lcbOStateMain, 2); }, {working}},
        {"status cleared is all", [&] { PickKey(w->lcbOStateMain, QVariant()); }, all},
        {"customer, and orders without one", [&] { PickKey(w->lcbCust, petrov); }, {working, bare}},
        {"customer cleared", [&] { PickKey(w->lcbCust, QVariant()); }, all},
        {"plate contains", [&] { Filter(w->edReg, "456"); }, {working, closed, bare}},
        {"plate in Cyrillic", [&] { Filter(w->edReg, "А123"); }, {fresh, bare}},
        {"plate with a quote", [&] { Filter(w->edReg, "'"); }, {bare}},       {"plate cleared", [&] { Filter(w->edReg, ""); }, all},
        {"number with % and _ taken as patterns", [&] { Filter(w->edNum, "50%_\""); }, {working}},
        {"number matching nothing", [&] { Filter(w->edNum, "Я_нет"); }, {}}, {"number cleared", [&] { Filter(w->edNum, ""); }, all},
        {"make", [&] { PickKey(w->lcbMark, 2); }, {working, closed, bare}},    {"model on top", [&] { PickKey(w->lcbModel, 1); }, {bare}},
        {"lookups cleared", [&] { PickKey(w->lcbMark, QVariant()), PickKey(w->lcbModel, QVariant()); }, all},
        {"deleted only with 'Удаленные'", [&] { w->cbDel->click(); }, {deleted}}, {"live again", [&] { w->cbDel->click(); }, all},
        {"the period takes in older orders", [&] { w->deUp->setDateTime(QDateTime::currentDateTime().addDays(-45)); },
         {fresh, working, closed, old, bare}},
        {"the last day counts whole",
         [&] { w->deTo->setDateTime(QDateTime(QDate::currentDate().addDays(-40), QTime(0, 0))); }, {old}},
    };
    for (const auto &c : filters) {
        c.set();
        Settle();
        EXPECT_EQ(Ids(w), c.expected) << c.what;
    }
    EXPECT_EQ(dialogs.Shown.size(), 0);
}

} // namespace
