// The main window: its menu, tool bar and actions, one instance per child window, the "Окна" menu, the
// caption, the change of user and the order filter sent by another window.

#include "about_fm.h"
#include "app_windows_fixture.h"
#include "common.h"
#include "fm_base.h"
#include "options_fm.h"
#include "requisits_fm.h"
#include "script_fm.h"
#include "users_fm.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

namespace {

class MainWindow : public AppWindowsTest
{
};

// Stand-ins for the windows of later parts of the program.
class CustomersStandIn : public TfmBase
{
public:
    using TfmBase::TfmBase;
};

class MaterialsStandIn : public TfmBase
{
public:
    using TfmBase::TfmBase;
};

class OrdersStandIn : public TfmBase, public TOrderFilterTarget
{
public:
    using TfmBase::TfmBase;
    void ApplyOrderFilter(const TFilterOrder &filter) override
    {
        Filters.append(filter);
        FilterChange(nullptr);
    }
    QList<TFilterOrder> Filters;
};

QStringList Texts(const QList<QAction *> &actions)
{
    QStringList texts;
    for (QAction *action : actions)
        texts << (action->isSeparator() ? QString("-") : action->text());
    return texts;
}

QMenu *MenuOf(TMainFM &form, const QString &title)
{
    for (QAction *action : form.MainMenu->actions())
        if (action->text() == title)
            return action->menu();
    return nullptr;
}

TEST_F(MainWindow, MenuHoldsTheCommandsInTheirOrder)
{
    TMainFM &form = NewMain();
    EXPECT_EQ(Texts(form.MainMenu->actions()),
              QStringList({"Файл", "Справочники", "Журналы", "Отчеты", "Окна", "Помощь"}));
    EXPECT_EQ(Texts(MenuOf(form, "Файл")->actions()), QStringList({"Смена пользователя", "-", "Выход"}));
    EXPECT_EQ(Texts(MenuOf(form, "Справочники")->actions()),
              QStringList({"Основные сведения", "Справочник клиентов", "Справочник сотрудников", "Справочник услуг",
                           "Справочник пользователей", "Справочник складских операций",
                           "Справочник накопительных скидок", "Справочник материалов", "Справочник автомобилей"}));
    EXPECT_EQ(Texts(MenuOf(form, "Журналы")->actions()),
              QStringList({"Журнал складских операций", "Журнал заказов", "Журнал з/п", "Журнал кассы"}));
    EXPECT_EQ(Texts(MenuOf(form, "Отчеты")->actions()),
              QStringList({"Отчет о заказах", "Отчет о хитах услуг", "Отчет о хитах материалов"}));
    EXPECT_EQ(MenuOf(form, "Окна"), form.miWindow);
    EXPECT_TRUE(form.miWindow->actions().isEmpty());
    EXPECT_EQ(Texts(MenuOf(form, "Помощь")->actions()), QStringList({"Параметры программы", "-", "О программе"}));
}

TEST_F(MainWindow, ToolBarHoldsItsButtonsInTheirOrderWithHints)
{
    TMainFM &form = NewMain();
    EXPECT_EQ(Texts(form.ToolBar1->actions()),
              QStringList({"Справочник пользователей", "Справочник накопительных скидок", "Справочник материалов",
                           "Справочник услуг", "Справочник сотрудников", "Справочник клиентов",
                           "Справочник автомобилей", "-", "Журнал складских операций", "Журнал заказов",
                           "Журнал кассы", "Журнал з/п", "-", "О программе", "Скрипты и настройка БД"}));
    for (QAction *action : form.ToolBar1->actions())
        if (!action->isSeparator())
            EXPECT_EQ(action->toolTip(), action->text());
}

TEST_F(MainWindow, ActionsCarryTheirCaptionsAsHintsInTheOrderOfTheList)
{
    TMainFM &form = NewMain();
    QStringList names, captions;
    for (TAction *action : form.ActionList->Actions()) {
        names << action->objectName();
        captions << action->text();
        EXPECT_EQ(action->toolTip(), action->text()) << action->objectName().toStdString();
    }
    EXPECT_EQ(names, QStringList({"actShowUsers", "actExit", "actChangeUser", "actShowScript", "actShowDiscount",
                                  "actShowCustomers", "actShowMaterials", "actShowServices", "actShowEmpls",
                                  "actShowOperationType", "actShowStore", "actShowAuto", "actShowOrder",
                                  "actShowPayment", "actShowSalary", "actRequisits", "actOtchetVipZakaz",
                                  "actOtchetUslug", "actOtchetMaterial"}));
    EXPECT_EQ(captions,
              QStringList({"Справочник пользователей", "Выход", "Смена пользователя", "Скрипты и настройка БД",
                           "Справочник накопительных скидок", "Справочник клиентов", "Справочник материалов",
                           "Справочник услуг", "Справочник сотрудников", "Справочник складских операций",
                           "Журнал складских операций", "Справочник автомобилей", "Журнал заказов", "Журнал кассы",
                           "Журнал з/п", "Основные сведения", "Отчет о выполненных заказах", "Отчет о хитах услуг",
                           "Отчет о хитах материалов"}));
}

TEST_F(MainWindow, WindowsNotBuiltYetHaveDisabledActions)
{
    TMainFM &form = NewMain();
    for (TAction *action : {form.actShowDiscount, form.actShowCustomers, form.actShowMaterials, form.actShowServices,
                            form.actShowEmpls, form.actShowOperationType, form.actShowStore, form.actShowAuto,
                            form.actShowOrder, form.actShowPayment, form.actShowSalary, form.actOtchetVipZakaz,
                            form.actOtchetUslug, form.actOtchetMaterial})
        EXPECT_FALSE(action->isEnabled()) << action->objectName().toStdString();
    for (TAction *action : {form.actExit, form.actChangeUser, form.actShowUsers, form.actShowScript, form.actRequisits})
        EXPECT_TRUE(action->isEnabled()) << action->objectName().toStdString();
    // The menu entry with a caption of its own follows its action.
    QAction *entry = MenuOf(form, "Отчеты")->actions().value(0);
    EXPECT_FALSE(entry->isEnabled());
    form.RegisterReport(form.actOtchetVipZakaz, fmVipZakaz, [](TMainWindowLink *) { return new QWidget; });
    EXPECT_TRUE(entry->isEnabled());
}

TEST_F(MainWindow, StatusBarHasFourEmptyPanelsAndTheCurrencyGroupIsHidden)
{
    TMainFM &form = NewMain();
    form.show();
    const QList<QLabel *> panels = form.sb->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_EQ(panels.size(), 4);
    for (QLabel *panel : panels)
        EXPECT_TRUE(panel->text().isEmpty());
    EXPECT_EQ(form.GroupBox1->title(), "Валюта");
    EXPECT_FALSE(form.GroupBox1->isVisible());
    EXPECT_EQ(form.edVal1->text(), "р.");
    EXPECT_EQ(form.edVal2->text(), "руб.");
    EXPECT_EQ(form.edVal3->text(), "коп.");
    EXPECT_EQ(form.edVal1->objectName(), "edVal1");
    form.close();
}

TEST_F(MainWindow, CaptionIsTheDesignOneUntilShownThenNamesUserAndRole)
{
    TMainFM &form = NewMain();
    EXPECT_EQ(form.windowTitle(), "Kelvarion - приложение для автосервиса");
    EXPECT_TRUE(form.windowState() & Qt::WindowMaximized);
    CurrentUserName = "Оператор";
    CurrentRoleName = "Кассир";
    form.show();
    EXPECT_EQ(form.windowTitle(), "Автосервис [Оператор](Роль: Кассир)");
    form.close();
}

TEST_F(MainWindow, ShownAtStartWithTraceTheCaptionHasEmptyNames)
{
    CurrentUserId = 1;
    CurrentRoleId = 1;
    TMainFM &form = NewMain({"kelvarion", "TRACE"});
    form.show();
    EXPECT_EQ(form.windowTitle(), "Автосервис [](Роль: )");
    form.close();
}

TEST_F(MainWindow, ScriptsActionIsVisibleOnlyWithTrace)
{
    struct Case
    {
        QStringList arguments;
        bool visible;
    };
    for (const Case &c : {Case{{"kelvarion", "trace"}, true}, Case{{"kelvarion", "TrAcE"}, true},
                          Case{{"kelvarion"}, false}, Case{{"kelvarion", "x", "TRACE"}, false},
                          Case{{"kelvarion", "tracer"}, false}}) {
        TMainFM &form = NewMain(c.arguments);
        form.show();
        QCoreApplication::processEvents();
        EXPECT_EQ(form.actShowScript->isVisible(), c.visible) << c.arguments.join(' ').toStdString();
        QWidget *button = form.ToolBar1->widgetForAction(form.actShowScript);
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->isVisible(), c.visible) << c.arguments.join(' ').toStdString();
        form.close();
    }
}

TEST_F(MainWindow, FormShowOpensTheSettings)
{
    TMainFM &form = NewMain();
    dm->tConfig.Close();
    form.show();
    EXPECT_TRUE(dm->tConfig.Active());
    form.close();
}

TEST_F(MainWindow, SecondClickBringsTheWindowForwardWithoutANewEntry)
{
    TMainFM &form = NewMain();
    form.show();
    form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
    form.RegisterChild(form.actShowMaterials, ChildWindow<MaterialsStandIn>());
    ASSERT_TRUE(form.actShowCustomers->isEnabled());

    form.actShowCustomers->trigger();
    ASSERT_EQ(Children(form).size(), 1);
    QWidget *customers = Children(form).first();
    EXPECT_NE(dynamic_cast<CustomersStandIn *>(customers), nullptr);
    EXPECT_EQ(customers->windowTitle(), "Справочник клиентов");
    EXPECT_TRUE(customers->parentWidget()->isMaximized());
    ASSERT_EQ(form.ChildMenuItems().size(), 1);
    EXPECT_EQ(form.ChildMenuItems().first()->text(), "Справочник клиентов");
    EXPECT_TRUE(form.miWindow->actions().contains(form.ChildMenuItems().first()));

    form.actShowMaterials->trigger();
    EXPECT_EQ(Children(form).size(), 2);
    EXPECT_EQ(form.ChildMenuItems().size(), 1) << "materials add no entry";
    EXPECT_NE(form.MDIClient->activeSubWindow()->widget(), customers);

    form.actShowCustomers->trigger();
    EXPECT_EQ(Children(form).size(), 2);
    EXPECT_EQ(form.MDIClient->activeSubWindow()->widget(), customers);
    EXPECT_EQ(form.ChildMenuItems().size(), 1);
    form.close();
}

TEST_F(MainWindow, ClosingAndReopeningAddsASecondEntryThatOpensTheWindowAgain)
{
    TMainFM &form = NewMain();
    form.show();
    form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
    form.actShowCustomers->trigger();
    QPointer<QWidget> first = Children(form).first();
    first->parentWidget()->close();
    Flush();
    EXPECT_TRUE(first.isNull()) << "closing frees the child";
    EXPECT_TRUE(Children(form).isEmpty());
    EXPECT_EQ(form.ChildMenuItems().size(), 1) << "the entry stays after its window closed";

    form.actShowCustomers->trigger();
    ASSERT_EQ(Children(form).size(), 1);
    ASSERT_EQ(form.ChildMenuItems().size(), 2);
    EXPECT_EQ(form.ChildMenuItems().at(1)->text(), "Справочник клиентов");

    Children(form).first()->parentWidget()->close();
    Flush();
    form.ChildMenuItems().first()->trigger();
    EXPECT_EQ(Children(form).size(), 1) << "an entry runs its action";
    EXPECT_EQ(form.ChildMenuItems().size(), 3);
    form.close();
}

TEST_F(MainWindow, WindowsMenuListsTheOpenWindowsBelowTheEntries)
{
    TMainFM &form = NewMain();
    form.show();
    form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
    form.RegisterChild(form.actShowMaterials, ChildWindow<MaterialsStandIn>());
    form.actShowCustomers->trigger();
    form.actShowMaterials->trigger();
    emit form.miWindow->aboutToShow();
    EXPECT_EQ(Texts(form.miWindow->actions()),
              QStringList({"Справочник клиентов", "-", "&1 Справочник клиентов", "&2 Справочник материалов"}));
    QAction *firstWindow = form.miWindow->actions().at(2);
    firstWindow->trigger();
    EXPECT_EQ(form.MDIClient->activeSubWindow()->widget()->windowTitle(), "Справочник клиентов");

    // An entry added later goes above the list.
    Children(form).first()->parentWidget()->close();
    Flush();
    form.actShowCustomers->trigger();
    emit form.miWindow->aboutToShow();
    EXPECT_EQ(Texts(form.miWindow->actions()),
              QStringList({"Справочник клиентов", "Справочник клиентов", "-", "&1 Справочник материалов",
                           "&2 Справочник клиентов"}));
    form.close();
}

TEST_F(MainWindow, ClosingAChildSendsItsCloseActionWhichMatchesNoEntry)
{
    TMainFM &form = NewMain();
    form.show();
    form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
    form.actShowCustomers->trigger();
    form.actShowCustomers->trigger();
    ASSERT_EQ(form.ChildMenuItems().size(), 1);
    // The message as a child sends it, and as it would have to be to remove the entry.
    form.SendMessage(1026, caMinimize, 0);
    EXPECT_EQ(form.ChildMenuItems().size(), 1);
    form.SendMessage(1026, reinterpret_cast<qintptr>(form.actShowCustomers), 0);
    EXPECT_TRUE(form.ChildMenuItems().isEmpty());
    form.close();
}

TEST_F(MainWindow, ReportIsMadeOnceKeptInItsGlobalAndShownMaximised)
{
    TMainFM &form = NewMain();
    form.show();
    int made = 0;
    form.RegisterReport(form.actOtchetUslug, fmOtchetUslug, [&](TMainWindowLink *) {
        ++made;
        return new QWidget;
    });
    form.actOtchetUslug->trigger();
    ASSERT_FALSE(fmOtchetUslug.isNull());
    EXPECT_EQ(fmOtchetUslug->windowTitle(), "Отчет о хитах услуг");
    EXPECT_TRUE(fmOtchetUslug->windowState() & Qt::WindowMaximized);
    fmOtchetUslug->setWindowTitle("x");
    form.actOtchetUslug->trigger();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(fmOtchetUslug->windowTitle(), "Отчет о хитах услуг") << "the caption is set at every opening";
    delete fmOtchetUslug.data();
    form.actOtchetUslug->trigger();
    EXPECT_EQ(made, 2);
    delete fmOtchetUslug.data();
    form.close();
}

TEST_F(MainWindow, ExitAsksFirstAndClosesOnlyOnOk)
{
    TMainFM &form = NewMain();
    form.show();
    dialogs.Answer(Dialogs::ResultCancel);
    form.actExit->trigger();
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].text, "Закрыть приложение?");
    EXPECT_EQ(dialogs.Shown[0].caption, "Подтверждение");
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
    EXPECT_TRUE(form.isVisible());
    dialogs.Answer(Dialogs::ResultOk);
    form.actExit->trigger();
    EXPECT_FALSE(form.isVisible());
}

TEST_F(MainWindow, ChangeOfUserKeepsWindowsAndChangesTheCaptionAtOnce)
{
    TMainFM &form = NewMain();
    CurrentUserId = 1;
    CurrentUserName = "Администратор";
    CurrentRoleId = 1;
    CurrentRoleName = "Администратор";
    form.show();
    form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
    form.actShowCustomers->trigger();
    QPointer<QWidget> open = Children(form).first();

    ModalDriver driver;
    driver.Then([&](QWidget *) {
        PickUser(*LoginFM, 2);
        LoginFM->AdvGlowButton1->click();
    });
    form.actChangeUser->trigger();
    // A maximised child adds its own name behind, as multi-document frames do.
    EXPECT_EQ(form.windowTitle(), "Автосервис [Оператор](Роль: Оператор) - [Справочник клиентов]");
    EXPECT_EQ(CurrentUserId, 2);
    EXPECT_EQ(CurrentRoleId, 2);
    EXPECT_FALSE(open.isNull());
    EXPECT_EQ(Children(form).size(), 1);
    form.close();
}

TEST_F(MainWindow, RefusedChangeOfUserChangesNothing)
{
    Exec(QString("update USERS set PASSWORD = '%1' where ID = 2").arg(TDataDM::MD5("pw")));
    TMainFM &form = NewMain();
    CurrentUserId = 1;
    CurrentUserName = "Администратор";
    CurrentRoleId = 1;
    CurrentRoleName = "Администратор";
    form.show();
    const QString caption = form.windowTitle();

    ModalDriver driver;
    driver
        .Then([&](QWidget *) {
            PickUser(*LoginFM, 2);
            LoginFM->cxPassword->setText("wrong");
            LoginFM->AdvGlowButton1->click();
        })
        .Then([&](QWidget *) { LoginFM->AdvGlowButton2->click(); });
    form.actChangeUser->trigger();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_EQ(form.windowTitle(), caption);
    EXPECT_EQ(CurrentUserId, 1);
    EXPECT_EQ(CurrentUserName, "Администратор");
    EXPECT_EQ(CurrentRoleId, 1);
    EXPECT_EQ(CurrentRoleName.toString(), "Администратор");
    form.close();
}

TEST_F(MainWindow, OrderFilterOpensTheJournalFirstThenFilters)
{
    TMainFM &form = NewMain();
    form.show();
    form.RegisterChild(form.actShowOrder, ChildWindow<OrdersStandIn>());
    TFilterOrder filter;
    filter.DateUp = 0;
    filter.DateTo = 45000;
    filter.Num = "15";
    filter.Reg = "А123ВС";
    form.SendMessage(1027, reinterpret_cast<qintptr>(&filter), 0);
    ASSERT_EQ(Children(form).size(), 1);
    auto *journal = dynamic_cast<OrdersStandIn *>(Children(form).first());
    ASSERT_NE(journal, nullptr);
    EXPECT_EQ(journal->windowTitle(), "Журнал заказов");
    ASSERT_EQ(journal->Filters.size(), 1);
    EXPECT_EQ(journal->Filters[0].DateTo, 45000);
    EXPECT_EQ(journal->Filters[0].Reg, "А123ВС");
    EXPECT_TRUE(journal->tmrFilter->isActive());

    filter.Reg = "В777ОР";
    form.SendMessage(1027, reinterpret_cast<qintptr>(&filter), 0);
    EXPECT_EQ(Children(form).size(), 1) << "an open journal is brought forward";
    ASSERT_EQ(journal->Filters.size(), 2);
    EXPECT_EQ(journal->Filters[1].Reg, "В777ОР");
    form.close();
}

TEST_F(MainWindow, OrderFilterWithoutAJournalDoesNothing)
{
    TMainFM &form = NewMain();
    form.show();
    TFilterOrder filter;
    EXPECT_EQ(form.SendMessage(1027, reinterpret_cast<qintptr>(&filter), 0), 0);
    EXPECT_TRUE(Children(form).isEmpty());
    EXPECT_TRUE(dialogs.Texts().isEmpty());
    form.close();
}

TEST_F(MainWindow, UsersWindowIsOneChildWithoutAMenuEntry)
{
    TMainFM &form = NewMain();
    form.show();
    form.actShowUsers->trigger();
    ASSERT_EQ(Children(form).size(), 1);
    QPointer<QWidget> users = Children(form).first();
    EXPECT_NE(dynamic_cast<TUsersFM *>(users.data()), nullptr);
    EXPECT_EQ(users->windowTitle(), "Справочник пользователей");
    form.actShowUsers->trigger();
    EXPECT_EQ(Children(form).size(), 1);
    EXPECT_EQ(Children(form).first(), users.data());
    EXPECT_TRUE(form.ChildMenuItems().isEmpty());
    users->parentWidget()->close();
    Flush();
    EXPECT_TRUE(users.isNull());
    form.actShowUsers->trigger();
    EXPECT_EQ(Children(form).size(), 1);
    EXPECT_TRUE(form.ChildMenuItems().isEmpty());
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    form.close();
}

TEST_F(MainWindow, ScriptsWindowOpensFromItsToolButtonWithTrace)
{
    TMainFM &form = NewMain({"kelvarion", "TRACE"});
    form.show();
    auto *button = qobject_cast<QToolButton *>(form.ToolBar1->widgetForAction(form.actShowScript));
    ASSERT_NE(button, nullptr);
    button->click();
    ASSERT_EQ(Children(form).size(), 1);
    EXPECT_NE(dynamic_cast<TScriptFM *>(Children(form).first()), nullptr);
    EXPECT_EQ(Children(form).first()->windowTitle(), "Скрипты и настройка БД");
    form.close();
}

TEST_F(MainWindow, RequisitsCardShowsTheShopModallyAndClosesItsDataset)
{
    TMainFM &form = NewMain();
    form.show();
    ModalDriver driver;
    QString title, procName;
    bool onRequisits = false, openWhileShown = false;
    const auto look = [&](QWidget *modal) {
        auto *card = dynamic_cast<TRequisitsFM *>(modal);
        ASSERT_NE(card, nullptr);
        title = card->windowTitle();
        procName = card->ProcName;
        onRequisits = card->DataSource == &dm->dsRequisitsOpen;
        openWhileShown = dm->spRequisitsOpen.Active();
        card->AdvGlowButton2->click();
    };
    driver.Then(look);
    form.actRequisits->trigger();
    EXPECT_EQ(driver.Ran(), 1);
    EXPECT_EQ(title, "Основные сведения");
    EXPECT_EQ(procName, "spCustEdit");
    EXPECT_TRUE(onRequisits);
    EXPECT_TRUE(openWhileShown);
    EXPECT_FALSE(dm->spRequisitsOpen.Active());

    driver.Then(look);
    form.actRequisits->trigger();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_FALSE(dm->spRequisitsOpen.Active());
    EXPECT_TRUE(driver.Failures.isEmpty());
    form.close();
}

TEST_F(MainWindow, OptionsRunInTheirGlobalAndHandTheMarksToTheEdits)
{
    TMainFM &form = NewMain();
    form.show();
    ModalDriver driver;
    bool global = false;
    driver.Then([&](QWidget *modal) {
        global = OptionsFM != nullptr && modal == OptionsFM;
        OptionsFM->cxTextEdit1->setText("грн.");
        OptionsFM->AdvGlowButton1->click();
    });
    form.miOptions->trigger();
    EXPECT_EQ(driver.Ran(), 1);
    EXPECT_TRUE(global);
    EXPECT_EQ(OptionsFM, nullptr);
    EXPECT_EQ(form.edVal1->text(), "грн.");
    EXPECT_EQ(FormatMoney(3), "3.00 грн. ");
    form.close();
    QSettings ini(TMainFM::StorageFileName(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("MainFM/edVal1.Text").toString(), "грн.");
}

TEST_F(MainWindow, AboutBoxRunsModallyFromMenuAndToolBar)
{
    TMainFM &form = NewMain();
    form.show();
    ModalDriver driver;
    QStringList seen;
    const auto look = [&](QWidget *modal) {
        seen << (dynamic_cast<TAboutFM *>(modal) ? modal->windowTitle() : QString("?"));
        static_cast<TAboutFM *>(modal)->AdvGlowButton2->click();
    };
    driver.Then(look).Then(look);
    form.miAbout->trigger();
    qobject_cast<QToolButton *>(form.ToolBar1->widgetForAction(form.miAbout))->click();
    EXPECT_EQ(seen, QStringList({"О программе", "О программе"}));
    EXPECT_TRUE(form.findChildren<TAboutFM *>().isEmpty());
    form.close();
}

TEST_F(MainWindow, NoWindowOpensAtStart)
{
    TMainFM &form = NewMain();
    form.show();
    QCoreApplication::processEvents();
    EXPECT_TRUE(Children(form).isEmpty());
    form.close();
}

} // namespace
