// A shop's working day through the main window and the windows it opens, from the login to an orderly
// exit, and what the next start on the same data folder finds; the same windows under the roles that may
// only view or change; a hurried receptionist's keystrokes on empty grids, cards and filters.

#include "app_fixture.h"

#include "auto_fm.h"
#include "cust_dialog_fm.h"
#include "cust_fm.h"
#include "db_editors.h"
#include "materials_dialog_fm.h"
#include "ord_line_cards.h"
#include "order_fm.h"
#include "orders_card_fm.h"
#include "payment_card_fm.h"
#include "payment_fm.h"
#include "report_fm.h"
#include "rights_grid.h"
#include "salary_card_fm.h"
#include "salary_fm.h"
#include "select_print_doc_fm.h"
#include "store_card_fm.h"
#include "store_fm.h"
#include "test_database.h"
#include "users_fm.h"

#include <QCheckBox>
#include <QDir>
#include <QPushButton>
#include <QToolButton>

namespace {

// A material with its cost, how many come into the store and how many go into the order.
struct Ware { QString name; double cost; int delivered, used; };
const Ware Wares[] = {{"Масло 5W30", 900, 10, 4}, {"Фильтр масляный", 300, 5, 2}, {"Свеча зажигания", 250, 8, 0}};
const QList<QPair<QString, double>> Services = {{"Замена масла", 1000}, {"Диагностика", 500}};
const QString Master = "Кузнецов А.";
const double Discount = 10, MasterPercent = 30;
const QString Customer = "Петров Пётр", Plate = "К321ОР77";

// Every window the main window opens, and the windows' grids the operator works in during the day.
const QStringList DayGrids = {"CustFM.frmCust",         "AutoFM.frmAuto",           "StoreFM.frmStore",
                              "StoreCardFM.frmMaterials", "OrderFM.frmOrders",        "OrdersCardFM.frmOrdServ",
                              "OrdersCardFM.frmOrdMat",  "PaymentFM.frmPayments",    "SalaryFM.frmSalary"};

class ShopDay : public AppWindowsTest
{
protected:
    void SetUp() override
    {
        AppWindowsTest::SetUp();
        for (const Ware &w : Wares)
            Exec(QString("insert into MAT (MATNAME, COST, QUANTITY) values ('%1', %2, 0)").arg(w.name).arg(w.cost));
        for (const auto &[name, cost] : Services)
            Exec(QString("insert into SERV (SERVNAME, COST, HOURS) values ('%1', %2, 1)").arg(name).arg(cost));
        Exec(QString("insert into EMPLS (EMPLNAME, PERCSERV) values ('%1', %2)").arg(Master).arg(MasterPercent));
    }
    // Logs in through the kept dialog and shows a main window.
    TMainFM &Start(int user)
    {
        OnModal<TLoginFM>([this] { EXPECT_TRUE(LoginFM->Execute()) << dialogs.Texts().join('\n').toStdString(); },
                          {[user](TLoginFM *login) { Login(user)(login); }});
        TMainFM &main = NewMain();
        main.show();
        return main;
    }
    QList<TAction *> ChildActions()
    {
        TMainFM &m = *mainWindow;
        return {m.actShowUsers,     m.actShowDiscount,      m.actShowCustomers, m.actShowMaterials, m.actShowServices,
                m.actShowEmpls,     m.actShowOperationType, m.actShowStore,     m.actShowAuto,      m.actShowOrder,
                m.actShowPayment,   m.actShowSalary};
    }
    template <class T = QWidget>
    T *Open(TAction *action)
    {
        action->Execute();
        QMdiSubWindow *sub = mainWindow->MDIClient->activeSubWindow();
        auto *window = sub ? dynamic_cast<T *>(sub->widget()) : nullptr;
        EXPECT_NE(window, nullptr) << action->text().toStdString();
        return window;
    }
    double Debt(int employee)
    {
        return Scalar(QString("select SUMM from spSalaryMain(cast('today' as date) - 30, cast('today' as date)) "
                              "where IDEMPL_LKP_EMPL_F_EMPLNAME = %1").arg(employee)).toDouble();
    }
    // Status, payment state, sum and paid sum.
    QString OrderState(int order)
    {
        return Scalar(QString("select IDSTATUS || ':' || coalesce(PAYSTATE, 0) || ':' || cast(SUMORDER as integer) || ':' "
                              "|| coalesce(cast(SUMPAY as integer), 0) from ORDERS where ID = %1").arg(order)).toString();
    }
    // What the store should hold: the delivery, less what the order took when `sold`.
    static QStringList Expected(bool sold)
    {
        QStringList stock;
        for (const Ware &w : Wares)
            stock << QString::number(w.delivered - (sold ? w.used : 0));
        return stock;
    }
    QStringList Stock() { return RowsIn(*dm, "select QUANTITY from MAT order by ID"); }
};

TEST_F(ShopDay, AWorkingDayThroughTheWindowsIsThereAtTheNextStart)
{
    // The administrator gives the operator's role full access to the day's grids, in place in the rights grid.
    TMainFM *main = &Start(1);
    auto *users = Open<TUsersFM>(main->actShowUsers);
    for (const QString &key : DayGrids) {
        const int row = RowOf(users->frmRolesActions, {{"ID_ROLE_LKP_ROLES_F_ROLENAME", 2},
                                                        {"ID_ACTION_LKP_ACTIONS_F_ACTNAME", IdOf("ACTIONS", "TACTION", key)}});
        ASSERT_GE(row, 0) << key.toStdString();
        SetCell(users->frmRolesActions, row, TRightsGrid::RightColumn, 4);
    }
    OnModal<TLoginFM>(main->actChangeUser, {[](TLoginFM *login) { Login(2)(login); }});
    ASSERT_TRUE(main->windowTitle().startsWith("Автосервис [Оператор](Роль: Оператор)")) << main->windowTitle().toStdString();
    users->close();

    auto *customers = Open<TCustFM>(main->actShowCustomers);
    OnCard(customers->frmCust->actAdd, {[](TCustomDictFM *card) {
        Type(card, "TCXCUSTNAME", Customer);
        Type(card, "TCXMOBI_PHONE", "8-900-111");
        card->AdvGlowButton1->click();
    }});
    const int customer = IdOf("CUST", "CUSTNAME", Customer);
    ASSERT_GT(customer, 1);
    auto *autos = Open<TAutoFM>(main->actShowAuto);
    OnCard(autos->frmAuto->actAdd, {[](TCustomDictFM *card) {
        Type(card, "REG_TCX", Plate);
        Pick(card->findChild<QWidget *>("IDMARK_LKP_MARK_F_MARKNAME_TCX"), "Skoda");
        Pick(card->findChild<QWidget *>("IDMODEL_LKP_MODEL_F_MODNAME_TCX"), "Fabia");
        card->AdvGlowButton1->click();
    }});
    const int vehicle = IdOf("AUTO", "REG", Plate);
    ASSERT_GT(vehicle, 0);

    // The morning's delivery.
    auto *store = Open<TStoreFM>(main->actShowStore);
    OnModal<TStoreCardFM>(store->frmStore->actAdd, {[&](TStoreCardFM *card) {
        Pick(Editor(card, "IDOTYPE_LKP_OTYPE_F_OTYPENAME"), "Приход");
        for (const Ware &w : Wares) {
            OnModal<TMaterialsDialogFM>([card] { card->frmMaterials->ToolButton2->click(); }, {[&](TMaterialsDialogFM *d) {
                ASSERT_TRUE(d->frmMaterials->DS->DataSet()->Locate("ID", IdOf("MAT", "MATNAME", w.name)));
                d->AdvGlowButton1->click();
            }});
            const int row = RowOf(card->frmMaterials, {{"SYS_IDMAT", IdOf("MAT", "MATNAME", w.name)}});
            SetCell(card->frmMaterials, row, "QUANTITY", w.delivered);
            SetCell(card->frmMaterials, row, "PRICEBUY", w.cost / 2);
            EXPECT_TRUE(card->PostLines());
        }
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(Stock(), Expected(false));
    EXPECT_EQ(Column(store->frmStore, "ID").size(), 3);

    // The customer's order: two services, two materials, a discount on the services and their master.
    auto *orders = Open<TOrderFM>(main->actShowOrder);
    int order = 0;
    OnModal<TOrdersCardFM>(orders->frmOrders->actAdd, {[&](TOrdersCardFM *card) {
        order = card->OrderId().toInt();
        OnModal<TCustDialogFM>([card] { dynamic_cast<TDBButtonEdit *>(Editor(card, "DLG_IDCUST"))->ClickButton(0); },
                                  {[&](TCustDialogFM *d) {
                                      ASSERT_TRUE(d->frmCust->DS->DataSet()->Locate("ID", customer));
                                      d->AdvGlowButton1->click();
                                  }});
        TypeAndLeave(Editor(card, "REG"), Plate);
        Pick(Editor(card, "MARK_LKP_MARK_F_MARKNAME"), "Skoda");
        Pick(Editor(card, "MODEL_LKP_MODEL_F_MODNAME"), "Fabia");
        for (const auto &service : Services)
            OnModal<TOrdServCardFM>([card] { card->frmOrdServ->ToolButton2->click(); }, {[&](TOrdServCardFM *c) {
                ASSERT_TRUE(c->frmServices->DS->DataSet()->Locate("ID", IdOf("SERV", "SERVNAME", service.first)));
                c->AdvGlowButton1->click();
            }});
        OnModal<TOrdMatCardFM>([card] { card->frmOrdMat->ToolButton2->click(); }, {[&](TOrdMatCardFM *c) {
            QList<int> rows;
            for (const Ware &w : Wares)
                if (w.used)
                    rows << RowOf(c->frmMaterials, {{"MATNAME", w.name}});
            Select(c->frmMaterials, rows);
            c->AdvGlowButton3->click();
        }});
        for (const Ware &w : Wares)
            if (w.used)
                SetCell(card->frmOrdMat, RowOf(card->frmOrdMat, {{"IDMAT_LKP_MAT_F_MATNAME", IdOf("MAT", "MATNAME", w.name)}}),
                        "OCNT", w.used);
        Pick(card->lcbMaster, Master);
        card->btnMaster->click();
        TypeAndLeave(Editor(card, "DISCOUNT"), QString::number(Discount));
        card->btnDiscount->click();
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(dialogs.Texts(), QStringList({TOrdersCardFM::MasterQuestion, TOrdersCardFM::DiscountQuestion}));
    dialogs.Clear();
    double services = 0, sum = 0;
    for (const auto &service : Services)
        services += service.second * (100 - Discount) / 100;
    sum = services;
    for (const Ware &w : Wares)
        sum += w.cost * w.used;
    EXPECT_EQ(OrderState(order), QString("1:1:%1:0").arg(sum));
    EXPECT_EQ(Scalar(QString("select IDCUST || ':' || IDAUTO from ORDERS where ID = %1").arg(order)).toString(),
              QString("%1:%2").arg(customer).arg(vehicle));
    EXPECT_EQ(Stock(), Expected(true));

    // All five documents of the order.
    const QString num = Scalar(QString("select NUM from ORDERS where ID = %1").arg(order)).toString();
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", order));
    OnModal<TSelectPrintDocFM>(orders->actPrint, {[](TSelectPrintDocFM *d) {
        for (QCheckBox *box : {d->cxCheckBox2, d->cxCheckBox3, d->cxCheckBox4, d->cxCheckBox5})
            box->setChecked(true);
        d->AdvGlowButton1->click();
    }});
    QStringList documents;
    for (const char *kind : {"zakaz", "zakaz-nar", "schet", "schet-fact", "act"})
        documents << dm->DocFolder + kind + num + ".rtf";
    EXPECT_EQ(shell.Opened, documents);

    // Paid in two goes, the second for what is left; then the order is closed.
    auto *cash = Open<TPaymentFM>(main->actShowPayment);
    double paid = 0;
    for (const double part : {sum / 3, sum - sum / 3}) {
        OnCard(cash->frmPayments->actAdd, {[&](TCustomDictFM *card) {
            Pick(Editor(card, TPaymentCardFM::CustomerField), Customer);
            EXPECT_EQ(Value(card, TPaymentCardFM::ObjectField).toInt(), order);
            EXPECT_DOUBLE_EQ(Value(card, "SUMM").toDouble(), sum - paid) << "what is left to pay";
            TypeAndLeave(Editor(card, "SUMM"), QString::number(part));
            card->AdvGlowButton1->click();
        }});
        paid += part;
        EXPECT_EQ(OrderState(order), QString("1:%1:%2:%3").arg(paid < sum ? 2 : 3).arg(sum).arg(paid));
    }
    EXPECT_EQ(Column(cash->frmPayments, "SUMM").size(), 2);
    ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", order));
    OnModal<TOrdersCardFM>(orders->frmOrders->actEdit, {[](TOrdersCardFM *card) {
        Pick(Editor(card, "IDSTATUS_LKP_OSTATE_F_STATENAME"), "Закрыт");
        card->AdvGlowButton1->click();
    }});
    EXPECT_EQ(OrderState(order), QString("6:3:%1:%1").arg(sum));

    // The master's pay for the day, as the debts list of the payroll card offers it.
    const int master = IdOf("EMPLS", "EMPLNAME", Master);
    EXPECT_DOUBLE_EQ(Debt(master), services * MasterPercent / 100);
    auto *payroll = Open<TSalaryFM>(main->actShowSalary);
    OnModal<TSalaryCardFM>(payroll->frmSalary->actAdd, {[&](TSalaryCardFM *payout) {
        payout->frmEmpl->GridView->SetFocusedRowIndex(RowOf(payout->frmEmpl, {{TSalaryCardFM::EmployeeField, master}}));
        payout->AdvGlowButton1->click();
    }});
    EXPECT_DOUBLE_EQ(Debt(master), 0);

    // The three reports of the day, each exported to a workbook that the shell opens.
    const struct { TAction *action; QString field, expected; } reports[] = {
        {main->actOtchetVipZakaz, "NUM", num}, {main->actOtchetUslug, "SERVNAME", Services[0].first},
        {main->actOtchetMaterial, "MATNAME", Wares[0].name}};
    for (const auto &r : reports) {
        auto *report = Open<TfmReport>(r.action);
        TFIBDataSet &ds = report->DataSet();
        EXPECT_TRUE(ds.Locate(r.field, r.expected)) << r.field.toStdString();
        report->cxButton2->click();
        EXPECT_TRUE(QFile::exists(report->LastWorkbook())) << r.field.toStdString();
        EXPECT_EQ(shell.Opened.last(), report->LastWorkbook());
    }

    // "Выход", as the program ends: the run's transaction is committed and the database backed up. Nothing
    // was said since the order's questions.
    main->actExit->Execute();
    EXPECT_EQ(dialogs.Texts(), QStringList{"Закрыть приложение?"});
    EXPECT_FALSE(main->isVisible());
    mainWindow.reset();
    dm->DataModuleDestroy();
    dm->AutomaticBackup();
    delete LoginFM;
    dm.reset();

    // The next start on the same folder: the stock, the order closed and paid, its documents and the backup.
    dm = std::make_unique<TDataDM>(nullptr, QStringList{"kelvarion"});
    LoginFM = new TLoginFM();
    // The operator is still the session's user: the login itself is the login window's own tests' matter.
    ASSERT_EQ(CurrentUserId, 2);
    main = &NewMain();
    main->show();
    EXPECT_EQ(Stock(), Expected(true));
    orders = Open<TOrderFM>(main->actShowOrder);
    const int row = RowOf(orders->frmOrders, {{"ID", order}});
    ASSERT_GE(row, 0);
    QStringList shown;
    for (const char *field : {"IDSTATUS_LKP_OSTATE_F_STATENAME", "PSTATUS_LKP_PAYSTATE_F_STATUS", "SUMPAY"})
        shown << Column(orders->frmOrders, field)[row];
    EXPECT_EQ(shown, QStringList({"6", "3", "0"})) << "closed, paid, nothing left to pay";
    for (const QString &document : documents)
        EXPECT_TRUE(QFile::exists(document)) << document.toStdString();
    EXPECT_EQ(QDir(dataHome + "/Kelvarion/backup").entryList({"*.fbk"}).size(), 1);
}

// Who may do what in the day's windows: the viewer nothing, the operator no adding or deleting; then the
// administrator in a hurry.
TEST_F(ShopDay, RolesThatMayOnlyViewOrChangeCannotAddOrDeleteAndHurriedInputBreaksNothingAndLosesNothingEntered)
{
    Exec("insert into CUST (CUSTNAME) values ('Сидоров')");
    Exec("insert into ORDERS (IDCUST, IDSTATUS, CREATE_DATE) select max(ID), 1, cast('today' as date) from CUST");
    const struct { int user; bool edits; } roles[] = {{3, false}, {2, true}};
    QSet<QString> seen;
    for (const auto &role : roles) {
        Start(role.user);
        for (TAction *action : ChildActions()) {
            QWidget *window = Open(action);
            for (TGridFrame *frame : window->findChildren<TGridFrame *>()) {
                seen << frame->RightsKey();
                const std::string key = frame->RightsKey().toStdString();
                EXPECT_TRUE(frame->actRefresh->isEnabled() && !frame->actAdd->isEnabled() && !frame->actDel->isEnabled())
                    << role.user << " " << key;
                if (!role.edits)
                    EXPECT_FALSE(frame->actEdit->isEnabled()) << key;
                // A double click on a row opens no card for the viewer: only a window's choice, if any.
                if (!role.edits && frame->GridView->RowCount() > 0) {
                    ModalDriver nothing(300);
                    QTest::mouseDClick(frame->GridView->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
                    EXPECT_EQ(nothing.Failures, QStringList()) << key;
                }
            }
            if (role.user == 2 && dynamic_cast<TUsersFM *>(window))
                EXPECT_TRUE(static_cast<TUsersFM *>(window)->frmUser->actEdit->isEnabled()) << "the seeded «Изменение»";
        }
        mainWindow.reset();
    }
    for (const QString &key : DayGrids)
        EXPECT_TRUE(seen.contains(key) || key.contains("CardFM")) << key.toStdString();

    // A hurried receptionist: double clicks on empty grids, Enter in empty filters, Escape in every card of
    // every window, and a journal closed while its card is open.
    TMainFM &main = Start(1);
    auto *hurried = new ScriptedDialogs; // answers the questions of this part only
    for (TAction *action : ChildActions()) {
        QWidget *window = Open(action);
        for (QLineEdit *line : window->findChildren<QLineEdit *>())
            if (line->isVisible() && line->text().isEmpty())
                QTest::keyClick(line, Qt::Key_Return);
        Settle();
        for (TGridFrame *frame : window->findChildren<TGridFrame *>()) {
            const std::string key = frame->RightsKey().toStdString();
            const int rows = frame->GridView->RowCount();
            ModalDriver nothing(300);
            if (rows == 0)
                QTest::mouseDClick(frame->GridView->viewport(), Qt::LeftButton, {}, QPoint(5, 5));
            EXPECT_EQ(nothing.Failures, QStringList()) << key;
            if (!frame->actAdd->isEnabled() || !frame->isVisible())
                continue;
            if (hurried->PendingAnswers() == 0)
                hurried->Answer(Dialogs::ResultCancel); // "save?", if the card asks
            ModalDriver escape;
            escape.Then([](QWidget *card) { QTest::keyClick(card, Qt::Key_Escape); });
            // The database never deletes an action, so a cancelled new one stays, told as any failure is.
            const bool keepsRow = key == "UsersFM.frmActions";
            try {
                frame->actAdd->Execute();
                EXPECT_FALSE(keepsRow);
            } catch (const std::exception &) {
                EXPECT_TRUE(keepsRow) << key;
            }
            EXPECT_EQ(escape.Failures, QStringList()) << key;
            frame->actRefresh->Execute();
            EXPECT_EQ(frame->GridView->RowCount(), rows + keepsRow) << key;
        }
    }
    QStringList told = hurried->Texts();
    told.removeAll(TCustomDictFM::SaveQuestion);
    EXPECT_EQ(told, QStringList());
    delete hurried;
    dialogs.Install();

    // Typed, then Escape: the card asks, and a new row whose card was not confirmed goes all the same.
    auto *customers = Open<TCustFM>(main.actShowCustomers);
    const int customerRows = customers->frmCust->GridView->RowCount();
    OnCard(customers->frmCust->actAdd, {[](TCustomDictFM *card) {
        Type(card, "TCXCUSTNAME", "Быстров");
        QTest::keyClick(card, Qt::Key_Escape);
    }});
    EXPECT_EQ(dialogs.Texts(), QStringList{TCustomDictFM::SaveQuestion});
    EXPECT_FALSE(Column(customers->frmCust, "CUSTNAME").contains("Быстров"));

    // The journal closed behind its card: the card still saves, and nothing breaks.
    OnCard(customers->frmCust->actAdd, {[&](TCustomDictFM *card) {
        Type(card, "TCXCUSTNAME", "Торопыгин");
        customers->close();
        card->AdvGlowButton1->click();
    }});
    EXPECT_TRUE(customers->isVisible()) << "the journal stays while its card is open";
    AppWindowsTest::Flush();
    EXPECT_GT(IdOf("CUST", "CUSTNAME", "Торопыгин"), 1);
    EXPECT_EQ(Open<TCustFM>(main.actShowCustomers)->frmCust->GridView->RowCount(), customerRows + 1);
}

} // namespace
