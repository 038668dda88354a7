// The main window: its menu and tool bar, one instance per child window, the "Окна" menu, the caption,
// the change of user, the order filter sent by another window, and what it keeps in its ini file.

#include "about_fm.h"
#include "app_fixture.h"
#include "common.h"
#include "fm_base.h"
#include "form_storage.h"
#include "options_fm.h"
#include "requisits_fm.h"
#include "script_fm.h"
#include "users_fm.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
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
    // The main window's storage: no separator between the per-user folder's name and the file's.
    QString IniPath() const { return home.path() + "/sharekelvarion.ini"; }
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

    // Showing puts user and role in the caption and checks for an update once, opening the page through
    // the shell; exit asks first.
    EXPECT_EQ(form.windowTitle(), "Kelvarion - приложение для автосервиса");
    EXPECT_TRUE(form.windowState() & Qt::WindowMaximized);
    CurrentUserName = "Оператор";
    CurrentRoleName = "Кассир";
    dm->tConfig.Close();
    form.UpdateCheck.MarkerPath = home.path() + "/fresh-chkupd";
    QStringList asked;
    form.UpdateCheck.Download = [&](const QString &url, bool) { return asked << url, QString("update"); };
    form.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(asked.size(), 1);
    EXPECT_TRUE(asked.value(0).startsWith(TUpdateCheck::VendorSite + "/system/")) << asked.join(' ').toStdString();
    EXPECT_EQ(shell.Opened, QStringList({TUpdateCheck::VendorSite + "/soft/kelvarion/update/"}));
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

TEST_F(MainWindow, OneWindowPerClassAnEntryPerOpeningInTheWindowsMenuAndAChangeOfUserKeepsThem)
{
    SetPassword(2, "pw");
    CurrentUserId = CurrentRoleId = 1;
    CurrentUserName = "Администратор";
    CurrentRoleName = "Администратор";
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

    // A change of user keeps the windows and changes the caption at once, but a refusal changes nothing.
    const QList<QWidget *> open = Children(form);
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
    EXPECT_EQ(form.windowTitle(), "Автосервис [Только просмотр](Роль: Только просмотр) - [Журнал заказов]");
    EXPECT_EQ(Session(), "3 Только просмотр 3 Только просмотр");
    EXPECT_EQ(Children(form), open);
    form.close();
}

TEST_F(MainWindow, ScriptsOnlyWithTraceFirstRealWindowsOpenOnceSmallDialogsRunModallyAndABackupGoesToTheFolderPicked)
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

    // The shop's requisites, the options and the about box run modally.
    OnModal<TRequisitsFM>([&] { form.actRequisits->trigger(); }, {[&](TRequisitsFM *card) {
        EXPECT_EQ(card->ProcName, "spCustEdit");
        EXPECT_EQ(card->DataSource, &dm->dsRequisitsOpen);
        EXPECT_TRUE(dm->spRequisitsOpen.Active());
        card->AdvGlowButton2->click();
    }});
    EXPECT_FALSE(dm->spRequisitsOpen.Active());
    OnModal<TOptionsFM>([&] { form.miOptions->trigger(); }, {[](TOptionsFM *options) {
        EXPECT_EQ(options, OptionsFM) << "options run in their global";
        OptionsFM->cxTextEdit1->setText("грн.");
        OptionsFM->AdvGlowButton1->click();
    }});
    EXPECT_EQ(OptionsFM, nullptr);
    EXPECT_EQ(form.edVal1->text() + "/" + FormatMoney(3), "грн./3.00 грн. ");
    OnModal<TAboutFM>([&] { form.miAbout->trigger(); }, {[](TAboutFM *about) { about->close(); }});
    form.close();

    // A backup goes to the folder picked; Cancel makes none.
    TMainFM &again = ShowMain();
    const QString folder = home.path() + "/copies";
    ASSERT_TRUE(QDir().mkpath(folder));
    for (bool pick : {false, true}) {
        OnModal<QFileDialog>([&] { again.miBackup->trigger(); }, {[&](QFileDialog *chooser) {
            EXPECT_EQ(QDir(chooser->directory()).absolutePath(), QDir(dm->BackupFolder).absolutePath());
            chooser->setDirectory(folder);
            QDialog *dialog = chooser; // accept() is public on the base
            pick ? dialog->accept() : dialog->reject();
        }});
    }
    const QStringList made = QDir(folder).entryList({"*.fbk"});
    ASSERT_EQ(made.size(), 1);
    EXPECT_EQ(dialogs.Texts(), QStringList({"Резервная копия базы данных сохранена в файле\r\n" + folder + "/" + made[0]}))
        << "and nothing said before";
}

// ---- Currency marks and placement in "kelvarion.ini"; starts that survive a bad file or a missing folder

TEST_F(MainWindow, MarksAndPlacementArePersistedAtCloseAndABadFileOrMissingFolderDoNotStopTheStart)
{
    CurrencyWords().Val1 = "old";
    TMainFM &form = NewMain();
    EXPECT_EQ(TMainFM::StorageFileName(), IniPath());
    EXPECT_EQ(form.edVal1->text(), "р.") << "a new window starts from the default marks";
    form.setWindowState(Qt::WindowNoState);
    form.setGeometry(40, 50, 640, 480);
    form.show();
    QCoreApplication::processEvents();
    const QSize size = form.size();
    form.edVal1->setText("$");
    form.edVal2->setText("долл.");
    EXPECT_EQ(FormatMoney(1500), "1500.00 $ ");
    CurrencyWords().Val3 = "цент."; // changed behind the edits: taken over at close
    EXPECT_FALSE(QFileInfo::exists(IniPath()));
    form.close();
    EXPECT_EQ(form.edVal3->text(), "цент.");
    EXPECT_EQ(QSettings(IniPath(), QSettings::IniFormat).value("MainFM/edVal3.Text").toString(), "цент.");
    EXPECT_FALSE(QFileInfo::exists(dataHome + "/kelvarion.ini"));

    mainWindow.reset();
    CurrencyWords() = TCurrencyWords();
    TMainFM &again = NewMain();
    EXPECT_EQ(again.edVal1->text() + " " + again.edVal2->text(), "$ долл.");
    EXPECT_EQ(AmountInWords(CurrencyWords().Val2, CurrencyWords().Val3, 10000), "Один долл. 00 цент.");
    EXPECT_FALSE(again.windowState() & Qt::WindowMaximized);
    again.show();
    QCoreApplication::processEvents();
    EXPECT_EQ(again.size(), size);
    again.close();

    // A corrupt file, a foreign placement or a missing folder do not stop the start.
    QByteArray garbage("[MainFM\n\x01\x02\xff\xfe=\n edVal1.Text\n=\n[[[\nPlacement=@ByteArray(\\x00\\x01)\n");
    garbage.append(QByteArray(64, '\0'));
    for (const QByteArray &content : {garbage, QByteArray("[MainFM]\nPlacement=bm90IGEgcGxhY2VtZW50\nedVal1.Text=42\n")}) {
        QFile file(IniPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(content);
        file.close();
        TMainFM &form = NewMain();
        EXPECT_TRUE(form.windowState() & Qt::WindowMaximized) << "no usable placement: maximised";
        form.show();
        EXPECT_TRUE(form.windowTitle().startsWith("Автосервис"));
        form.close();
    }
    EXPECT_EQ(mainWindow->edVal1->text(), "42");

    const QString missing = home.path() + "/nowhere/deeper/share";
    qputenv("XDG_DATA_HOME", missing.toLocal8Bit());
    TMainFM &moved = NewMain();
    EXPECT_EQ(moved.FormStorage1.IniFileName, missing + "kelvarion.ini");
    moved.show();
    moved.close();
    EXPECT_TRUE(dialogs.Texts().isEmpty());
}

TEST(FormStorage, UnwritableFileIsLeftAloneSilently)
{
    QWidget form;
    form.setObjectName("SomeFM");
    auto *edit = new QLineEdit("x", &form);
    edit->setObjectName("edName");
    TFormStorage storage(&form);
    storage.IniFileName = "/proc/kelvarion-cannot-be-here.ini";
    storage.StoredProps = {"edName.Text", "edMissing.Text"};
    storage.Save();
    EXPECT_FALSE(storage.Restore());
    EXPECT_EQ(edit->text(), "x");
}

} // namespace
