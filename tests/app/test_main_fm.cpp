// The main window: its menu and tool bar, one instance per child window, the "Окна" menu, the caption,
// the change of user and the order filter sent by another window.

#include "about_fm.h"
#include "app_fixture.h"
#include "common.h"
#include "fm_base.h"
#include "options_fm.h"
#include "requisits_fm.h"
#include "script_fm.h"
#include "users_fm.h"

#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

namespace {

// Stand-ins for the windows of later parts of the program, each of its own class.
template <int>
struct StandIn : TfmBase
{
    using TfmBase::TfmBase;
};
using CustomersStandIn = StandIn<1>;

class OrdersStandIn : public TfmBase, public TOrderFilterTarget
{
public:
    using TfmBase::TfmBase;
    void ApplyOrderFilter(const TFilterOrder &filter) override { Regs << filter.Reg; }
    QStringList Regs;
};

class MainWindow : public AppWindowsTest
{
protected:
    TMainFM &ShowMain()
    {
        TMainFM &form = NewMain();
        form.show();
        form.RegisterChild(form.actShowCustomers, ChildWindow<CustomersStandIn>());
        form.RegisterChild(form.actShowMaterials, ChildWindow<StandIn<2>>());
        return form;
    }
};

QStringList Texts(const QList<QAction *> &actions)
{
    QStringList texts;
    for (QAction *action : actions)
        texts << (action->isSeparator() ? QString("-") : action->text());
    return texts;
}

TEST_F(MainWindow, MenuAndToolBarHoldTheCommandsInTheirOrderTheCaptionNamesTheUserAndExitAsksFirst)
{
    TMainFM &form = NewMain();
    QList<QPair<QString, QStringList>> expected = {
        {"", {"Файл", "Справочники", "Журналы", "Отчеты", "Окна", "Помощь"}},
        {"Файл", {"Смена пользователя", "Резервная копия…", "-", "Выход"}},
        {"Справочники",
         {"Основные сведения", "Справочник клиентов", "Справочник сотрудников", "Справочник услуг",
          "Справочник пользователей", "Справочник складских операций", "Справочник накопительных скидок",
          "Справочник материалов", "Справочник автомобилей"}},
        {"Журналы", {"Журнал складских операций", "Журнал заказов", "Журнал з/п", "Журнал кассы"}},
        {"Отчеты", {"Отчет о заказах", "Отчет о хитах услуг", "Отчет о хитах материалов"}},
        {"Окна", {}},
        {"Помощь", {"Параметры программы", "-", "О программе"}},
        {"tool bar",
         {"Справочник пользователей", "Справочник накопительных скидок", "Справочник материалов", "Справочник услуг",
          "Справочник сотрудников", "Справочник клиентов", "Справочник автомобилей", "-",
          "Журнал складских операций", "Журнал заказов", "Журнал кассы", "Журнал з/п", "-", "О программе",
          "Скрипты и настройка БД"}}};
    QHash<QString, QList<QAction *>> shown{{"", form.MainMenu->actions()}, {"tool bar", form.ToolBar1->actions()}};
    for (QAction *entry : form.MainMenu->actions())
        shown[entry->text()] = entry->menu()->actions();
    for (const auto &[where, texts] : expected)
        EXPECT_EQ(Texts(shown[where]), texts) << where.toStdString();
    for (QAction *action : form.ToolBar1->actions())
        EXPECT_EQ(action->toolTip(), action->text()) << "hints are the captions";

    // Every window is built: every action, and the menu entries following them, enabled.
    for (TAction *action : form.ActionList->Actions())
        EXPECT_TRUE(action->isEnabled()) << action->objectName().toStdString();
    QAction *entry = shown["Отчеты"].value(1);

    // A report is made once, kept in its global, and gets its caption at every opening.
    int made = 0;
    form.RegisterReport(form.actOtchetUslug, fmOtchetUslug, [&](TMainWindowLink *) { return ++made, new QWidget; });
    EXPECT_TRUE(entry->isEnabled());
    form.actOtchetUslug->trigger();
    ASSERT_FALSE(fmOtchetUslug.isNull());
    fmOtchetUslug->setWindowTitle("x");
    form.actOtchetUslug->trigger();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(fmOtchetUslug->windowTitle(), "Отчет о хитах услуг");
    EXPECT_TRUE(fmOtchetUslug->windowState() & Qt::WindowMaximized);
    delete fmOtchetUslug.data();

    // Showing puts user and role in the caption; exit asks first.
    EXPECT_EQ(form.windowTitle(), "Kelvarion - приложение для автосервиса");
    EXPECT_TRUE(form.windowState() & Qt::WindowMaximized);
    CurrentUserName = "Оператор";
    CurrentRoleName = "Кассир";
    dm->tConfig.Close();
    form.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(form.windowTitle(), "Автосервис [Оператор](Роль: Кассир)");
    EXPECT_TRUE(dm->tConfig.Active()) << "showing opens the settings";
    EXPECT_TRUE(Children(form).isEmpty());

    dialogs.Answer(Dialogs::ResultCancel);
    form.actExit->trigger();
    EXPECT_TRUE(form.isVisible());
    form.actExit->trigger();
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(dialogs.Texts(), QStringList({"Закрыть приложение?", "Закрыть приложение?"}));
    EXPECT_EQ(dialogs.Shown[0].buttons, Dialogs::OkCancel);
}

TEST_F(MainWindow, OneWindowPerClassAndAnEntryPerOpeningInTheWindowsMenu)
{
    TMainFM &form = ShowMain();
    form.actShowCustomers->trigger();
    ASSERT_EQ(Children(form).size(), 1);
    QPointer<QWidget> customers = Children(form).first();
    EXPECT_TRUE(dynamic_cast<CustomersStandIn *>(customers.data()) && customers->parentWidget()->isMaximized());
    EXPECT_EQ(customers->windowTitle(), "Справочник клиентов");

    form.actShowMaterials->trigger();
    form.actShowCustomers->trigger();
    EXPECT_EQ(Children(form).size(), 2) << "a second click brings the window forward";
    EXPECT_EQ(form.MDIClient->activeSubWindow()->widget(), customers);
    // Only the customers add an entry; the open windows are listed below the entries.
    emit form.miWindow->aboutToShow();
    EXPECT_EQ(Texts(form.miWindow->actions()),
              QStringList({"Справочник клиентов", "-", "&1 Справочник клиентов", "&2 Справочник материалов"}));
    form.miWindow->actions().at(3)->trigger();
    EXPECT_EQ(form.MDIClient->activeSubWindow()->widget()->windowTitle(), "Справочник материалов");

    customers->parentWidget()->close();
    Flush();
    EXPECT_TRUE(customers.isNull()) << "closing frees the child";
    EXPECT_EQ(form.ChildMenuItems().size(), 1) << "the entry stays after its window closed";
    form.actShowCustomers->trigger();
    emit form.miWindow->aboutToShow();
    EXPECT_EQ(Texts(form.miWindow->actions()),
              QStringList({"Справочник клиентов", "Справочник клиентов", "-", "&1 Справочник материалов",
                           "&2 Справочник клиентов"}));
    Children(form).last()->parentWidget()->close();
    Flush();
    form.ChildMenuItems().first()->trigger();
    EXPECT_EQ(Children(form).size(), 2) << "an entry runs its action";
    EXPECT_EQ(form.ChildMenuItems().size(), 3);

    // An order filter opens the journal first, then filters; an open journal is brought forward.
    form.RegisterChild(form.actShowOrder, ChildWindow<OrdersStandIn>());
    TFilterOrder filter;
    for (const QString reg : {"А123ВС", "В777ОР"})
        EXPECT_EQ((filter.Reg = reg, form.SendMessage(1027, reinterpret_cast<qintptr>(&filter), 0)), 0);
    EXPECT_EQ(Children(form).size(), 3);
    auto *journal = dynamic_cast<OrdersStandIn *>(form.MDIClient->activeSubWindow()->widget());
    ASSERT_NE(journal, nullptr);
    EXPECT_EQ(journal->windowTitle() + ": " + journal->Regs.join(' '), "Журнал заказов: А123ВС В777ОР");
    form.close();
}

TEST_F(MainWindow, ScriptsOnlyWithTraceFirstAndRealWindowsOpenOnceWithoutMenuEntries)
{
    for (const auto &[arguments, visible] : QList<QPair<QStringList, bool>>{{{"kelvarion"}, false},
                                                                           {{"kelvarion", "x", "TRACE"}, false},
                                                                           {{"kelvarion", "tracer"}, false},
                                                                           {{"kelvarion", "TrAcE"}, true}}) {
        NewMain(arguments).show();
        QCoreApplication::processEvents();
        EXPECT_EQ(mainWindow->actShowScript->isVisible(), visible) << arguments.join(' ').toStdString();
        EXPECT_EQ(mainWindow->ToolBar1->widgetForAction(mainWindow->actShowScript)->isVisible(), visible);
    }
    TMainFM &form = *mainWindow;
    form.actShowUsers->trigger();
    form.actShowUsers->trigger();
    qobject_cast<QToolButton *>(form.ToolBar1->widgetForAction(form.actShowScript))->click();
    ASSERT_EQ(Children(form).size(), 2);
    EXPECT_TRUE(dynamic_cast<TUsersFM *>(Children(form)[0]) && dynamic_cast<TScriptFM *>(Children(form)[1]));
    EXPECT_TRUE(form.ChildMenuItems().isEmpty());
    EXPECT_TRUE(dialogs.Texts().isEmpty()) << dialogs.Texts().join('\n').toStdString();
    form.close();
}

TEST_F(MainWindow, ChangeOfUserKeepsWindowsAndChangesTheCaptionAtOnceButARefusalChangesNothing)
{
    SetPassword(2, "pw");
    CurrentUserId = CurrentRoleId = 1;
    CurrentUserName = "Администратор";
    CurrentRoleName = "Администратор";
    TMainFM &form = ShowMain();
    form.actShowCustomers->trigger();
    QPointer<QWidget> open = Children(form).first();
    const QString caption = form.windowTitle();

    ModalDriver driver;
    driver.Then(Login(2, "wrong")).Then(Login(0, QString(), false));
    form.actChangeUser->trigger();
    EXPECT_EQ(driver.Ran(), 2);
    EXPECT_EQ(form.windowTitle(), caption);
    EXPECT_EQ(Session(), "1 Администратор 1 Администратор");

    driver.Then(Login(3));
    form.actChangeUser->trigger();
    // A maximised child adds its own name behind, as multi-document frames do.
    EXPECT_EQ(form.windowTitle(), "Автосервис [Только просмотр](Роль: Только просмотр) - [Справочник клиентов]");
    EXPECT_EQ(Session(), "3 Только просмотр 3 Только просмотр");
    EXPECT_EQ(Children(form), QList<QWidget *>({open.data()}));
    form.close();
}

TEST_F(MainWindow, RequisitsOptionsAndAboutRunModally)
{
    TMainFM &form = NewMain();
    form.show();
    ModalDriver driver;
    bool requisitsOpenWhileShown = false;
    driver
        .Then([&](QWidget *modal) {
            auto *card = dynamic_cast<TRequisitsFM *>(modal);
            ASSERT_NE(card, nullptr);
            EXPECT_EQ(card->ProcName, "spCustEdit");
            EXPECT_EQ(card->DataSource, &dm->dsRequisitsOpen);
            requisitsOpenWhileShown = dm->spRequisitsOpen.Active();
            card->AdvGlowButton2->click();
        })
        .Then([&](QWidget *modal) {
            ASSERT_EQ(modal, OptionsFM) << "options run in their global";
            OptionsFM->cxTextEdit1->setText("грн.");
            OptionsFM->AdvGlowButton1->click();
        });
    driver.Then([&](QWidget *modal) {
        EXPECT_NE(dynamic_cast<TAboutFM *>(modal), nullptr);
        modal->close();
    });
    form.actRequisits->trigger();
    EXPECT_TRUE(requisitsOpenWhileShown);
    EXPECT_FALSE(dm->spRequisitsOpen.Active());
    form.miOptions->trigger();
    EXPECT_EQ(OptionsFM, nullptr);
    EXPECT_EQ(form.edVal1->text() + "/" + FormatMoney(3), "грн./3.00 грн. ");
    form.miAbout->trigger();
    EXPECT_EQ(driver.Ran(), 3);
    EXPECT_TRUE(driver.Failures.isEmpty());
    form.close();
}

} // namespace

TEST_F(MainWindow, ABackupGoesToTheFolderPickedAndCancelMakesNone)
{
    TMainFM &form = ShowMain();
    const QString folder = home.path() + "/copies";
    ASSERT_TRUE(QDir().mkpath(folder));
    for (bool pick : {false, true}) {
        ModalDriver driver;
        driver.Then([&](QWidget *modal) {
            auto *chooser = qobject_cast<QFileDialog *>(modal);
            ASSERT_NE(chooser, nullptr);
            EXPECT_EQ(QDir(chooser->directory()).absolutePath(), QDir(dm->BackupFolder).absolutePath());
            chooser->setDirectory(folder);
            QDialog *dialog = chooser; // accept() is public on the base
            pick ? dialog->accept() : dialog->reject();
        });
        form.miBackup->trigger();
    }
    const QStringList made = QDir(folder).entryList({"*.fbk"});
    ASSERT_EQ(made.size(), 1);
    EXPECT_EQ(dialogs.Texts(), QStringList({"Резервная копия базы данных сохранена в файле\r\n" + folder + "/" + made[0]}));
}
