#include "main_fm.h"

#include "about_fm.h"
#include "action_menu_item.h"
#include "app_exception.h"
#include "auto_fm.h"
#include "common.h"
#include "cust_fm.h"
#include "data_dm.h"
#include "dialogs.h"
#include "discount_fm.h"
#include "employee_fm.h"
#include "fm_base.h"
#include "login_fm.h"
#include "materials_fm.h"
#include "operation_type_fm.h"
#include "options_fm.h"
#include "order_fm.h"
#include "payment_fm.h"
#include "report_fm.h"
#include "requisits_fm.h"
#include "salary_fm.h"
#include "script_fm.h"
#include "services_fm.h"
#include "store_fm.h"
#include "system_folders.h"
#include "users_fm.h"

#include <QCloseEvent>
#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QGuiApplication>
#include <QMdiArea>
#include <QScreen>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShowEvent>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

TMainFM *MainFM = nullptr;
QPointer<QWidget> fmVipZakaz;
QPointer<QWidget> fmOtchetUslug;
QPointer<QWidget> fmOtchetMaterial;

const QString TMainFM::DesignCaption = QStringLiteral("Kelvarion - приложение для автосервиса");
const QString TMainFM::ShortTitle = QStringLiteral("Автосервис");

namespace {

// The actions in the order of the list, each with its caption, which is also its hint.
struct ActionEntry
{
    TAction *TMainFM::*member;
    const char *name;
    const char *caption;
    QStyle::StandardPixmap icon;
    bool windowsMenuEntry;
};

const ActionEntry kActions[] = {
    {&TMainFM::actShowUsers, "actShowUsers", "Справочник пользователей", QStyle::SP_DirHomeIcon, false},
    {&TMainFM::actExit, "actExit", "Выход", QStyle::SP_DialogCloseButton, false},
    {&TMainFM::actChangeUser, "actChangeUser", "Смена пользователя", QStyle::SP_BrowserReload, false},
    {&TMainFM::actShowScript, "actShowScript", "Скрипты и настройка БД", QStyle::SP_FileDialogContentsView, false},
    {&TMainFM::actShowDiscount, "actShowDiscount", "Справочник накопительных скидок", QStyle::SP_DialogApplyButton,
     false},
    {&TMainFM::actShowCustomers, "actShowCustomers", "Справочник клиентов", QStyle::SP_DirOpenIcon, true},
    {&TMainFM::actShowMaterials, "actShowMaterials", "Справочник материалов", QStyle::SP_DriveHDIcon, false},
    {&TMainFM::actShowServices, "actShowServices", "Справочник услуг", QStyle::SP_FileDialogListView, false},
    {&TMainFM::actShowEmpls, "actShowEmpls", "Справочник сотрудников", QStyle::SP_FileDialogDetailedView, false},
    {&TMainFM::actShowOperationType, "actShowOperationType", "Справочник складских операций",
     QStyle::SP_FileDialogInfoView, false},
    {&TMainFM::actShowStore, "actShowStore", "Журнал складских операций", QStyle::SP_DriveFDIcon, false},
    {&TMainFM::actShowAuto, "actShowAuto", "Справочник автомобилей", QStyle::SP_ComputerIcon, true},
    {&TMainFM::actShowOrder, "actShowOrder", "Журнал заказов", QStyle::SP_FileIcon, false},
    {&TMainFM::actShowPayment, "actShowPayment", "Журнал кассы", QStyle::SP_DialogSaveButton, false},
    {&TMainFM::actShowSalary, "actShowSalary", "Журнал з/п", QStyle::SP_DialogYesButton, false},
    {&TMainFM::actRequisits, "actRequisits", "Основные сведения", QStyle::SP_FileDialogInfoView, false},
    {&TMainFM::actOtchetVipZakaz, "actOtchetVipZakaz", "Отчет о выполненных заказах", QStyle::SP_FileDialogDetailedView,
     false},
    {&TMainFM::actOtchetUslug, "actOtchetUslug", "Отчет о хитах услуг", QStyle::SP_FileDialogDetailedView, false},
    {&TMainFM::actOtchetMaterial, "actOtchetMaterial", "Отчет о хитах материалов", QStyle::SP_FileDialogDetailedView,
     false},
};

void guarded(const std::function<void()> &f)
{
    try {
        f();
    } catch (...) {
        HandleCurrentException();
    }
}

} // namespace

TMainFM::TMainFM(const QStringList &arguments, QWidget *parent)
    : QMainWindow(parent), FormStorage1(this),
      m_arguments(arguments.isEmpty() && QCoreApplication::instance() ? QCoreApplication::arguments() : arguments)
{
    setObjectName(QStringLiteral("MainFM"));
    setWindowTitle(DesignCaption);
    setWindowState(Qt::WindowMaximized);
    MainFM = this;

    MDIClient = new QMdiArea(this);
    MDIClient->setObjectName(QStringLiteral("MDIClient"));
    setCentralWidget(MDIClient);

    CreateActions();
    CreateMenus();
    CreateToolBar();
    CreateStatusBar();
    CreateCurrencyGroup();
    RegisterWindows();

    guarded([this] { FormCreate(this); });
}

TMainFM::~TMainFM()
{
    // The children go first, while the frame they report to still exists.
    for (QMdiSubWindow *sub : MDIClient->subWindowList())
        delete sub;
    if (MainFM == this)
        MainFM = nullptr;
}

void TMainFM::CreateActions()
{
    ActionList = new TActionList(this, QStringLiteral("ActionList"));
    for (const ActionEntry &entry : kActions) {
        auto *action = new TAction(ActionList, QLatin1String(entry.name), QString::fromUtf8(entry.caption));
        action->setIcon(style()->standardIcon(entry.icon));
        this->*entry.member = action;
        m_windowsMenuEntry.insert(action, entry.windowsMenuEntry);
        // Disabled until a window is wired to it.
        action->setEnabled(false);
    }
    for (TAction *ready : {actExit, actChangeUser, actRequisits})
        ready->setEnabled(true);
    actExit->OnExecute = [this](QObject *sender) { actExitExecute(sender); };
    actChangeUser->OnExecute = [this](QObject *sender) { actChangeUserExecute(sender); };
    actRequisits->OnExecute = [this](QObject *sender) { actRequisitsExecute(sender); };

    miOptions = new QAction(QStringLiteral("Параметры программы"), this);
    miOptions->setObjectName(QStringLiteral("miOptions"));
    connect(miOptions, &QAction::triggered, this, [this] { guarded([this] { actOptionsExecute(miOptions); }); });
    miAbout = new QAction(style()->standardIcon(QStyle::SP_MessageBoxInformation), QStringLiteral("О программе"), this);
    miAbout->setObjectName(QStringLiteral("miAbout"));
    miAbout->setToolTip(miAbout->text());
    connect(miAbout, &QAction::triggered, this, [this] { guarded([this] { actAboutExecute(miAbout); }); });
    miBackup = new QAction(QStringLiteral("Резервная копия…"), this);
    miBackup->setObjectName(QStringLiteral("miBackup"));
    connect(miBackup, &QAction::triggered, this, [this] { guarded([this] { actBackupExecute(miBackup); }); });
}

void TMainFM::CreateMenus()
{
    MainMenu = menuBar();
    MainMenu->setObjectName(QStringLiteral("MainMenu"));

    QMenu *file = MainMenu->addMenu(QStringLiteral("Файл"));
    file->setObjectName(QStringLiteral("miFile"));
    file->addAction(actChangeUser);
    file->addAction(miBackup);
    file->addSeparator();
    file->addAction(actExit);

    QMenu *dictionaries = MainMenu->addMenu(QStringLiteral("Справочники"));
    dictionaries->setObjectName(QStringLiteral("miDictionaries"));
    for (TAction *action : {actRequisits, actShowCustomers, actShowEmpls, actShowServices, actShowUsers,
                            actShowOperationType, actShowDiscount, actShowMaterials, actShowAuto})
        dictionaries->addAction(action);

    QMenu *journals = MainMenu->addMenu(QStringLiteral("Журналы"));
    journals->setObjectName(QStringLiteral("miJournals"));
    for (TAction *action : {actShowStore, actShowOrder, actShowSalary, actShowPayment})
        journals->addAction(action);

    QMenu *reports = MainMenu->addMenu(QStringLiteral("Отчеты"));
    reports->setObjectName(QStringLiteral("miReports"));
    reports->addAction(new TActionMenuItem(actOtchetVipZakaz, reports, QStringLiteral("Отчет о заказах")));
    reports->addAction(actOtchetUslug);
    reports->addAction(actOtchetMaterial);

    miWindow = MainMenu->addMenu(QStringLiteral("Окна"));
    miWindow->setObjectName(QStringLiteral("miWindow"));
    connect(miWindow, &QMenu::aboutToShow, this, &TMainFM::FillWindowList);

    QMenu *help = MainMenu->addMenu(QStringLiteral("Помощь"));
    help->setObjectName(QStringLiteral("miHelp"));
    help->addAction(miOptions);
    help->addSeparator();
    help->addAction(miAbout);
}

void TMainFM::CreateToolBar()
{
    ToolBar1 = addToolBar(QStringLiteral("ToolBar1"));
    ToolBar1->setObjectName(QStringLiteral("ToolBar1"));
    ToolBar1->setMovable(false);
    ToolBar1->setToolButtonStyle(Qt::ToolButtonIconOnly);
    for (TAction *action :
         {actShowUsers, actShowDiscount, actShowMaterials, actShowServices, actShowEmpls, actShowCustomers, actShowAuto})
        ToolBar1->addAction(action);
    ToolBar1->addSeparator();
    for (TAction *action : {actShowStore, actShowOrder, actShowPayment, actShowSalary})
        ToolBar1->addAction(action);
    ToolBar1->addSeparator();
    ToolBar1->addAction(miAbout);
    ToolBar1->addAction(actShowScript);
}

void TMainFM::CreateStatusBar()
{
    sb = statusBar();
    sb->setObjectName(QStringLiteral("sb"));
    for (int i = 0; i < 4; ++i) {
        auto *panel = new QLabel(sb);
        panel->setObjectName(QStringLiteral("sbPanel%1").arg(i));
        panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        sb->addWidget(panel, 1);
    }
}

void TMainFM::CreateCurrencyGroup()
{
    GroupBox1 = new QGroupBox(QStringLiteral("Валюта"), this);
    GroupBox1->setObjectName(QStringLiteral("GroupBox1"));
    auto *row = new QHBoxLayout(GroupBox1);
    const TCurrencyWords defaults;
    QLineEdit **edits[] = {&edVal1, &edVal2, &edVal3};
    const QString texts[] = {defaults.Val1, defaults.Val2, defaults.Val3};
    for (int i = 0; i < 3; ++i) {
        QLineEdit *edit = new QLineEdit(texts[i], GroupBox1);
        edit->setObjectName(QStringLiteral("edVal%1").arg(i + 1));
        row->addWidget(edit);
        *edits[i] = edit;
    }
    GroupBox1->hide();
    CurrencyWords() = defaults;
    connect(edVal1, &QLineEdit::textChanged, this, [](const QString &text) { CurrencyWords().Val1 = text; });
    connect(edVal2, &QLineEdit::textChanged, this, [](const QString &text) { CurrencyWords().Val2 = text; });
    connect(edVal3, &QLineEdit::textChanged, this, [](const QString &text) { CurrencyWords().Val3 = text; });
}

void TMainFM::TakeCurrencyWords()
{
    const TCurrencyWords words = CurrencyWords();
    edVal1->setText(words.Val1);
    edVal2->setText(words.Val2);
    edVal3->setText(words.Val3);
}

// ---------------------------------------------------------------------------------------------
// The windows

void TMainFM::RegisterWindows()
{
    // One line per window; the actions of windows still to be built stay disabled.
    RegisterChild(actShowUsers, ChildWindow<TUsersFM>());
    RegisterChild(actShowScript, ChildWindow<TScriptFM>());
    RegisterChild(actShowMaterials, ChildWindow<TMaterialsFM>());
    RegisterChild(actShowServices, ChildWindow<TServicesFM>());
    RegisterChild(actShowOperationType, ChildWindow<TOperationTypeFM>());
    RegisterChild(actShowEmpls, ChildWindow<TEmployeeFM>());
    RegisterChild(actShowDiscount, ChildWindow<TDiscountFM>());
    RegisterChild(actShowCustomers, ChildWindow<TCustFM>());
    RegisterChild(actShowAuto, ChildWindow<TAutoFM>());
    RegisterChild(actShowOrder, ChildWindow<TOrderFM>());
    RegisterChild(actShowStore, ChildWindow<TStoreFM>());
    RegisterChild(actShowPayment, ChildWindow<TPaymentFM>());
    RegisterChild(actShowSalary, ChildWindow<TSalaryFM>());
    RegisterReport(actOtchetVipZakaz, fmVipZakaz, [](TMainWindowLink *main) { return new TfmVipZakaz(main); });
    RegisterReport(actOtchetUslug, fmOtchetUslug, [](TMainWindowLink *main) { return new TfmOtchetUslug(main); });
    RegisterReport(actOtchetMaterial, fmOtchetMaterial,
                   [](TMainWindowLink *main) { return new TfmOtchetMaterial(main); });
}

void TMainFM::RegisterChild(TAction *action, const TChildWindowKind &kind)
{
    m_children.insert(action, kind);
    action->OnExecute = [this, action](QObject *) { OpenChild(action); };
    action->setEnabled(true);
}

void TMainFM::RegisterReport(TAction *action, QPointer<QWidget> &global, const TReportFactory &create)
{
    m_reports.insert(action, {&global, create});
    action->OnExecute = [this, action](QObject *) { OpenReport(action); };
    action->setEnabled(true);
}

QWidget *TMainFM::FindChildWindow(const TChildWindowKind &kind) const
{
    for (QMdiSubWindow *sub : MDIClient->subWindowList(QMdiArea::CreationOrder)) {
        // A closed window waits for its deletion hidden; it is gone already.
        if (sub->isHidden() || !sub->widget())
            continue;
        if (kind.IsInstance(sub->widget()))
            return sub->widget();
    }
    return nullptr;
}

void TMainFM::BringForward(QWidget *window)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget())) {
        sub->show();
        MDIClient->setActiveSubWindow(sub);
        sub->raise();
        return;
    }
    window->show();
    window->raise();
    window->activateWindow();
}

void TMainFM::OpenChild(TAction *action)
{
    const auto found = m_children.constFind(action);
    if (found == m_children.constEnd())
        return;
    if (QWidget *open = FindChildWindow(*found)) {
        // No refresh is forced.
        BringForward(open);
        return;
    }
    TfmBase *window = found->Create(this);
    window->setWindowTitle(action->text());
    if (m_windowsMenuEntry.value(action))
        CreateChildMenu(action);
    window->ShowIn(MDIClient);
    BringForward(window);
}

void TMainFM::OpenReport(TAction *action)
{
    const auto found = m_reports.constFind(action);
    if (found == m_reports.constEnd())
        return;
    QPointer<QWidget> &report = *found->Global;
    if (!report) {
        report = found->Create(this);
        report->setWindowTitle(action->text());
        if (auto *child = dynamic_cast<TfmBase *>(report.data()))
            child->ShowIn(MDIClient);
        else
            report->setWindowState(Qt::WindowMaximized);
    }
    report->setWindowTitle(action->text());
    BringForward(report);
}

void TMainFM::CreateChildMenu(TAction *action)
{
    auto *item = new TActionMenuItem(action, miWindow);
    if (m_windowListSeparator)
        miWindow->insertAction(m_windowListSeparator, item);
    else
        miWindow->addAction(item);
    m_childMenuItems.append(item);
}

QList<QAction *> TMainFM::ChildMenuItems() const
{
    QList<QAction *> items;
    for (const QPointer<QAction> &item : m_childMenuItems)
        if (item)
            items.append(item);
    return items;
}

void TMainFM::FillWindowList()
{
    // The frame's own list of its windows, below the entries added at run time.
    qDeleteAll(m_windowList);
    m_windowList.clear();
    delete m_windowListSeparator;
    m_windowListSeparator = nullptr;
    const QList<QMdiSubWindow *> windows = MDIClient->subWindowList(QMdiArea::CreationOrder);
    QMdiSubWindow *active = MDIClient->activeSubWindow();
    int number = 0;
    for (QMdiSubWindow *sub : windows) {
        if (sub->isHidden())
            continue;
        if (!m_windowListSeparator)
            m_windowListSeparator = miWindow->addSeparator();
        ++number;
        QAction *entry = miWindow->addAction(QStringLiteral("&%1 %2").arg(number).arg(sub->windowTitle()));
        entry->setCheckable(true);
        entry->setChecked(sub == active);
        QPointer<QMdiSubWindow> target = sub;
        connect(entry, &QAction::triggered, this, [this, target] {
            if (target)
                BringForward(target->widget());
        });
        m_windowList.append(entry);
    }
}

// ---------------------------------------------------------------------------------------------
// Commands

void TMainFM::actExitExecute(QObject *)
{
    if (Dialogs::Current().Show(Dialogs::Confirmation, QStringLiteral("Закрыть приложение?"), Dialogs::OkCancel,
                                QStringLiteral("Подтверждение"))
        == Dialogs::ResultOk)
        close();
}

void TMainFM::actChangeUserExecute(QObject *)
{
    // Open windows stay under the new user; their frames test the rights again at each refresh.
    if (LoginFM && LoginFM->Execute())
        UpdateMainCaption();
}

void TMainFM::actRequisitsExecute(QObject *)
{
    TpFIBDataSet &requisits = DataDM->spRequisitsOpen;
    requisits.Open();
    // Closed after each use, also after a failure, so that the next opening reads the row anew.
    try {
        TRequisitsFM card(&DataDM->dsRequisitsOpen, QStringLiteral("spCustEdit"));
        card.ShowModal();
    } catch (...) {
        requisits.Close();
        throw;
    }
    requisits.Close();
}

void TMainFM::actBackupExecute(QObject *)
{
    if (!DataDM)
        return;
    QDir().mkpath(DataDM->BackupFolder);
    const QString folder = QFileDialog::getExistingDirectory(this, QStringLiteral("Папка для резервной копии"),
                                                             DataDM->BackupFolder,
                                                             QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    if (folder.isEmpty())
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QString made;
    try {
        made = DataDM->MakeBackup(folder);
    } catch (...) {
        QApplication::restoreOverrideCursor();
        throw;
    }
    QApplication::restoreOverrideCursor();
    Dialogs::Current().Show(Dialogs::Information, QStringLiteral("Резервная копия базы данных сохранена в файле\r\n") + made);
}

void TMainFM::actOptionsExecute(QObject *)
{
    OptionsFM = new TOptionsFM();
    const auto release = [this] {
        delete OptionsFM;
        OptionsFM = nullptr;
        // The dialog hands the marks over through the shared store; the edits show them again.
        TakeCurrencyWords();
    };
    try {
        OptionsFM->Execute();
    } catch (...) {
        release();
        throw;
    }
    release();
}

void TMainFM::actAboutExecute(QObject *)
{
    TAboutFM about;
    about.ShowModal();
}

void TMainFM::UpdateMainCaption()
{
    setWindowTitle(MainCaption(CurrentUserName, CurrentRoleName.toString()));
}

QString TMainFM::MainCaption(const QString &userName, const QString &roleName)
{
    // No blank between "]" and "(".
    return ShortTitle + QStringLiteral(" [") + userName + QStringLiteral("](Роль: ") + roleName + QLatin1Char(')');
}

// ---------------------------------------------------------------------------------------------
// Life of the window

QString TMainFM::StorageFileName()
{
    return TDataDM::UserIniFileName();
}

void TMainFM::FormCreate(QObject *)
{
    FormStorage1.IniFileName = StorageFileName();
    FormStorage1.StoredProps = {QStringLiteral("edVal1.Text"), QStringLiteral("edVal2.Text"),
                                QStringLiteral("edVal3.Text")};
    if (!FormStorage1.Restore()) {
        // Without a window manager the maximised state means nothing: take the screen's size as well.
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            setGeometry(screen->availableGeometry());
        setWindowState(Qt::WindowMaximized);
    }
}

void TMainFM::FormShow(QObject *)
{
    if (DataDM && !DataDM->tConfig.Active())
        DataDM->tConfig.Open();
    actShowScript->setVisible(m_arguments.size() > 1 && m_arguments.at(1).toUpper() == QLatin1String("TRACE"));
    UpdateMainCaption();
    UpdateCheck.Run();
}

void TMainFM::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (event->spontaneous())
        return;
    guarded([this] { FormShow(this); });
}

void TMainFM::closeEvent(QCloseEvent *event)
{
    // Each child's FormClose sends its message as it goes.
    MDIClient->closeAllSubWindows();
    TakeCurrencyWords();
    guarded([this] { FormStorage1.Save(); });
    event->accept();
}

// ---------------------------------------------------------------------------------------------
// Messages

qintptr TMainFM::SendMessage(int message, qintptr wParam, qintptr lParam)
{
    guarded([&] {
        if (message == ::WMDestroyChild)
            WMDestroyChild(wParam, lParam);
        else if (message == ::WMShowOrderAuto)
            WMShowOrderAuto(reinterpret_cast<const TFilterOrder *>(wParam));
    });
    return 0;
}

void TMainFM::WMDestroyChild(qintptr wParam, qintptr)
{
    // The children send their close action, not an action object: no entry matches, and that is kept.
    for (QAction *item : miWindow->actions()) {
        auto *entry = qobject_cast<TActionMenuItem *>(item);
        if (entry && reinterpret_cast<qintptr>(entry->Action()) == wParam) {
            m_childMenuItems.removeAll(entry);
            delete entry;
        }
    }
}

void TMainFM::WMShowOrderAuto(const TFilterOrder *filter)
{
    if (!filter)
        return;
    const TFilterOrder copy = *filter;
    actShowOrder->Execute();
    for (QMdiSubWindow *sub : MDIClient->subWindowList(QMdiArea::CreationOrder)) {
        if (sub->isHidden())
            continue;
        if (auto *journal = dynamic_cast<TOrderFilterTarget *>(sub->widget()))
            journal->ApplyOrderFilter(copy);
    }
}
