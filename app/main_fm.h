#pragma once
// The main window: a multi-document frame with the menu, the tool bar and the actions that open every
// window of the program, one instance each. It shows who is logged in, keeps the currency marks and
// checks once per installation for a newer version.

#include "actions.h"
#include "filter_order.h"
#include "form_storage.h"
#include "update_check.h"
#include "window_messages.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <functional>

class QGroupBox;
class QLineEdit;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QMenuBar;
class QStatusBar;
class QToolBar;
class TfmBase;

// How the main window tells a child window's class and makes a new one.
struct TChildWindowKind
{
    std::function<bool(const QWidget *window)> IsInstance;
    std::function<TfmBase *(TMainWindowLink *mainWindow)> Create;
};

template <class T>
TChildWindowKind ChildWindow()
{
    return {[](const QWidget *window) { return dynamic_cast<const T *>(window) != nullptr; },
            [](TMainWindowLink *mainWindow) -> TfmBase * { return new T(mainWindow); }};
}

// Makes a report window; a child of the frame when it is a TfmBase, else a window of its own.
using TReportFactory = std::function<QWidget *(TMainWindowLink *mainWindow)>;

class TMainFM : public QMainWindow, public TMainWindowLink
{
    Q_OBJECT
public:
    // `arguments` are the process's, the program's name first; the application's when empty.
    explicit TMainFM(const QStringList &arguments = QStringList(), QWidget *parent = nullptr);
    ~TMainFM() override;

    QMdiArea *MDIClient;
    QMenuBar *MainMenu;
    QToolBar *ToolBar1;
    QStatusBar *sb;
    TActionList *ActionList;
    QMenu *miWindow;
    // Hidden: the place of the currency marks that FormatMoney and the documents read.
    QGroupBox *GroupBox1;
    QLineEdit *edVal1;
    QLineEdit *edVal2;
    QLineEdit *edVal3;
    TFormStorage FormStorage1;
    TUpdateCheck UpdateCheck;

    TAction *actShowUsers, *actExit, *actChangeUser, *actShowScript, *actShowDiscount, *actShowCustomers,
        *actShowMaterials, *actShowServices, *actShowEmpls, *actShowOperationType, *actShowStore, *actShowAuto,
        *actShowOrder, *actShowPayment, *actShowSalary, *actRequisits, *actOtchetVipZakaz, *actOtchetUslug,
        *actOtchetMaterial;
    // The two plain menu commands; miAbout is also on the tool bar.
    QAction *miOptions;
    QAction *miAbout;
    // "Резервная копия…" of the File menu: a backup into a folder the user picks.
    QAction *miBackup;

    // Wires an action to its child window and enables it. An action with no window stays disabled.
    void RegisterChild(TAction *action, const TChildWindowKind &kind);
    // Wires a report action to its window, kept in `global` between openings, and enables it.
    void RegisterReport(TAction *action, QPointer<QWidget> &global, const TReportFactory &create);

    // The open child of that kind (one that is closing does not count), or null.
    QWidget *FindChildWindow(const TChildWindowKind &kind) const;
    // Brings a child forward, or makes it with the action's caption and shows it.
    void OpenChild(TAction *action);
    void OpenReport(TAction *action);

    // Appends an entry running `action` to miWindow.
    void CreateChildMenu(TAction *action);
    // The entries that CreateChildMenu added, oldest first.
    QList<QAction *> ChildMenuItems() const;
    // "Автосервис [user](Роль: role)"
    void UpdateMainCaption();
    static QString MainCaption(const QString &userName, const QString &roleName);

    void FormCreate(QObject *sender);
    void FormShow(QObject *sender);
    void actExitExecute(QObject *sender);
    void actChangeUserExecute(QObject *sender);
    void actRequisitsExecute(QObject *sender);
    void actOptionsExecute(QObject *sender);
    void actBackupExecute(QObject *sender);
    void actAboutExecute(QObject *sender);

    // 1026: walks miWindow for entries of the action `wParam`; as a child sends its close action there,
    // none matches and the entries stay.
    void WMDestroyChild(qintptr wParam, qintptr lParam);
    // 1027: opens the orders journal, or brings it forward, and filters it.
    void WMShowOrderAuto(const TFilterOrder *filter);
    qintptr SendMessage(int message, qintptr wParam, qintptr lParam) override;

    // The path of the storage: the per-user folder with "kelvarion.ini" right behind its name.
    static QString StorageFileName();
    static const QString DesignCaption;
    static const QString ShortTitle;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void CreateActions();
    void CreateMenus();
    void CreateToolBar();
    void CreateStatusBar();
    void CreateCurrencyGroup();
    void RegisterWindows();
    void FillWindowList();
    // The currency marks follow the edits; options may also change the marks directly.
    void TakeCurrencyWords();
    void BringForward(QWidget *window);

    struct TReportEntry
    {
        QPointer<QWidget> *Global;
        TReportFactory Create;
    };
    QHash<TAction *, TChildWindowKind> m_children;
    QHash<TAction *, bool> m_windowsMenuEntry;
    QHash<TAction *, TReportEntry> m_reports;
    QStringList m_arguments;
    QList<QPointer<QAction>> m_childMenuItems;
    QList<QAction *> m_windowList;
    QAction *m_windowListSeparator = nullptr;
};

// The main window of the process.
extern TMainFM *MainFM;

// The report windows, made on first use.
extern QPointer<QWidget> fmVipZakaz;
extern QPointer<QWidget> fmOtchetUslug;
extern QPointer<QWidget> fmOtchetMaterial;
