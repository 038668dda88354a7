#include "grid_frame.h"

#include "app_exception.h"
#include "captions_file.h"
#include "custom_dict_fm.h"
#include "data_dm.h"
#include "db_grid.h"
#include "dialogs.h"
#include "fm_base.h"
#include "fm_dialog.h"
#include "grid_column.h"
#include "grid_column_factory.h"
#include "grid_export.h"
#include "grid_rights.h"
#include "grid_view.h"
#include "shell.h"

#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QMenu>
#include <QStyle>
#include <QTemporaryFile>
#include <QThread>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

const QString TGridFrame::DefaultDelPrompt = QStringLiteral("Вы уверены, что хотите удалить выбранную строку?");

bool IsForm(const QObject *object)
{
    return object && (object->inherits("TfmBase") || object->inherits("TfmBaseSingleForm"));
}

namespace {

QString errorHeading(const std::exception &error)
{
    return QStringLiteral("Ошибка при удалении.\r\nТекст ошибки:\r\n") + ExceptionClassName(error) + QLatin1Char(' ')
           + ExceptionMessage(error);
}

QToolButton *toolButton(QToolBar *bar, const QString &name, TAction *action, QStyle::StandardPixmap icon)
{
    action->setIcon(bar->style()->standardIcon(icon));
    auto *button = new QToolButton(bar);
    button->setObjectName(name);
    button->setDefaultAction(action);
    button->setFixedSize(40, 40);
    button->setIconSize(QSize(24, 24));
    // A hidden action hides its button as well: a tool bar shows or hides its entries, not their widgets.
    QAction *entry = bar->addWidget(button);
    entry->setVisible(action->isVisible());
    QObject::connect(action, &QAction::changed, entry, [entry, action] { entry->setVisible(action->isVisible()); });
    return button;
}

} // namespace

TGridFrame::TGridFrame(QWidget *parent, const QString &name) : QFrame(parent)
{
    setObjectName(name);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    // The group box must stay the first child: its caption is the frame's title.
    gbGrid = new QGroupBox(this);
    gbGrid->setObjectName(QStringLiteral("gbGrid"));
    layout->addWidget(gbGrid);
    auto *inner = new QVBoxLayout(gbGrid);
    inner->setContentsMargins(2, 2, 2, 2);

    alGrid = new TActionList(this, QStringLiteral("alGrid"));
    actAdd = new TAction(alGrid, QStringLiteral("actAdd"), QStringLiteral("Добавить"), 5);
    actEdit = new TAction(alGrid, QStringLiteral("actEdit"), QStringLiteral("Изменить"), 168);
    actDel = new TAction(alGrid, QStringLiteral("actDel"), QStringLiteral("Удалить"), 204);
    actRefresh = new TAction(alGrid, QStringLiteral("actRefresh"), QStringLiteral("Обновить"), 203);
    actDblClick = new TAction(alGrid, QStringLiteral("actDblClick"), QStringLiteral("Выбрать"), 106);
    alGrid->OnExecute = [this](TAction *action, bool &handled) { alGridExecute(action, handled); };
    actAdd->OnExecute = [this](QObject *sender) { actAddExecute(sender); };
    actEdit->OnExecute = [this](QObject *sender) { actEditExecute(sender); };
    actDel->OnExecute = [this](QObject *sender) { actDelExecute(sender); };
    actRefresh->OnExecute = [this](QObject *sender) { actRefreshExecute(sender); };

    sToolBar1 = new QToolBar(gbGrid);
    sToolBar1->setObjectName(QStringLiteral("sToolBar1"));
    ToolButton1 = toolButton(sToolBar1, QStringLiteral("ToolButton1"), actRefresh, QStyle::SP_BrowserReload);
    ToolButton2 = toolButton(sToolBar1, QStringLiteral("ToolButton2"), actAdd, QStyle::SP_FileDialogNewFolder);
    ToolButton3 = toolButton(sToolBar1, QStringLiteral("ToolButton3"), actEdit, QStyle::SP_FileDialogDetailedView);
    ToolButton4 = toolButton(sToolBar1, QStringLiteral("ToolButton4"), actDel, QStyle::SP_TrashIcon);
    inner->addWidget(sToolBar1);

    Grid = new TDBGrid(gbGrid);
    GridView = Grid->View();
    inner->addWidget(Grid, 1);

    DS = new TDataSource(this);
    DS->setObjectName(QStringLiteral("DS"));
    GridView->SetDataSource(DS);
    connect(GridView, &TDBGridView::DblClick, this, [this] {
        try {
            GridViewDblClick(GridView);
        } catch (...) {
            HandleCurrentException();
        }
    });

    Query = new TpFIBQuery(this);
    Query->setObjectName(QStringLiteral("Query"));
    if (DataDM) {
        Query->SetDatabase(&DataDM->pFIBDatabaseMain);
        Query->SetTransaction(&DataDM->pFIBTransaction1);
    }

    pmMain = new QMenu(this);
    pmMain->setObjectName(QStringLiteral("pmMain"));
    miExcelExport = pmMain->addAction(QStringLiteral("Экспорт в Excel"));
    miExcelExport->setObjectName(QStringLiteral("miExcelExport"));
    connect(miExcelExport, &QAction::triggered, this, [this] {
        try {
            miExcelExportClick(miExcelExport);
        } catch (...) {
            HandleCurrentException();
        }
    });
    GridView->SetPopupMenu(pmMain);
}

TGridFrame::~TGridFrame()
{
    FreeCard();
}

void TGridFrame::FreeCard()
{
    delete CardForm;
    CardForm = nullptr;
}

void TGridFrame::StartTransaction()
{
    if (Query->Transaction() && !Query->Transaction()->Active())
        Query->Transaction()->StartTransaction();
}

QWidget *TGridFrame::GetParentForm() const
{
    for (QWidget *w = parentWidget(); w; w = w->parentWidget())
        if (IsForm(w))
            return w;
    return nullptr;
}

QWidget *TGridFrame::OwnerForm() const
{
    return m_owner ? m_owner.data() : GetParentForm();
}

QString TGridFrame::RightsKey() const
{
    QWidget *form = GetParentForm();
    return (form ? form->objectName() : QString()) + QLatin1Char('.') + objectName();
}

void TGridFrame::alGridExecute(TAction *, bool &)
{
    // Without the data module there is no catalogue to register in.
    if (!GetParentForm() || !DataDM)
        return;
    const QString key = RightsKey();
    QString title = gbGrid->title();
    if (title.trimmed().isEmpty())
        title = key;
    TGridRights rights(*Query);
    rights.Register(title, key);
}

void TGridFrame::CheckStateAction()
{
    if (RightsOff || !GetParentForm() || !DataDM)
        return;
    TGridRights rights(*Query);
    const QVariant actionId = rights.FindActionId(RightsKey());
    const struct
    {
        TAction *action;
        int level;
    } table[] = {{actRefresh, TGridRights::View},
                 {actAdd, TGridRights::Full},
                 {actEdit, TGridRights::Change},
                 {actDel, TGridRights::Full}};
    // Never enables: an action once disabled stays so for the life of the window.
    for (const auto &entry : table)
        entry.action->setEnabled(entry.action->isEnabled() && rights.HasRight(CurrentRoleId, actionId, entry.level));
}

void TGridFrame::actRefreshExecute(QObject *)
{
    CheckStateAction();
    const int focused = GridView->FocusedRowIndex();
    const int top = GridView->TopRowIndex();
    if (TFIBDataSet *ds = DS->DataSet()) {
        try {
            if (OnFillParameters)
                OnFillParameters(ds);
            if (ds->Active())
                ds->Close();
            ds->Open();
            // Columns are made once in the frame's life: a second refresh keeps them as they are.
            for (int i = 0; i < ds->FieldCount(); ++i) {
                const TFIBField *field = ds->Fields(i);
                if (!GridView->FindColumnByFieldName(field->FieldName()))
                    TGridColumnFactory::Make(GridView, *field);
            }
        } catch (const std::exception &error) {
            Dialogs::Current().Show(Dialogs::Error,
                                    QStringLiteral("Не удалось обновить таблицу\r\nПричина: ") + ExceptionMessage(error),
                                    Dialogs::Ok, QStringLiteral("Ошибка обновления"));
        }
    }
    ReadColumnCaption();
    try {
        GridView->SetFocusedRowIndex(focused);
        GridView->SetTopRowIndex(top);
    } catch (const std::exception &) {
        // A row that cannot be reached leaves the cursor where the refresh put it.
    }
}

void TGridFrame::actAddExecute(QObject *)
{
    if (!CardForm && OnCreateCard)
        OnCreateCard();
    if (!CardForm)
        return;
    const CardRelease release{this};

    CardForm->setWindowTitle(AddCaption);
    CardForm->SetEditMode(false);
    if (CardForm->CardQuery->Transaction() && !CardForm->CardQuery->Transaction()->Active())
        CardForm->CardQuery->Transaction()->StartTransaction();
    CardForm->CardQuery->ExecProcedure(ProcPrefix + QStringLiteral("Empty"));
    NewRowId = CardForm->CardQuery->Fields(0).AsInteger();

    bool remove = false;
    try {
        actRefresh->Execute();
        if (OnAfterAddRefresh)
            OnAfterAddRefresh(this);
        // The grid must have the new row under its cursor before the card binds to it.
        QThread::msleep(AddWaitMs);
        if (TFIBDataSet *ds = DS->DataSet())
            ds->Locate(QStringLiteral("ID"), NewRowId, 0);
        remove = CardForm->ShowModal() != mrOk;
    } catch (const std::exception &error) {
        remove = true;
        Dialogs::Current().Show(Dialogs::Error, errorHeading(error));
    }
    if (remove) {
        StartTransaction();
        Query->ExecProcedure(ProcPrefix + QStringLiteral("Del"), {NewRowId});
    }
    actRefresh->Execute();
}

void TGridFrame::actEditExecute(QObject *)
{
    ShowCardOfCurrentRow(EditCaption, true, false);
}

void TGridFrame::Test(QObject *)
{
    ShowCardOfCurrentRow(AddCaption, false, true);
}

void TGridFrame::ShowCardOfCurrentRow(const QString &caption, bool editMode, bool hideOk)
{
    // Every frame whose edit can fire sets OnCreateCard.
    if (!CardForm)
        OnCreateCard();
    if (!CardForm)
        return;
    const CardRelease release{this};
    CardForm->setWindowTitle(caption);
    CardForm->SetEditMode(editMode);
    if (hideOk)
        CardForm->AdvGlowButton1->hide();
    // On a server, a card that could not save (another seat held the row) leaves the grid to be read again.
    const bool saved = CardForm->ShowModal() == mrOk;
    if (saved || (!CardForm->ErrorText.isEmpty() && DataDM && DataDM->ServerMode()))
        actRefresh->Execute();
}

void TGridFrame::actDelExecute(QObject *)
{
    const QString prompt = DelPrompt.trimmed().isEmpty() ? DefaultDelPrompt : DelPrompt;
    if (Dialogs::Current().Show(Dialogs::Confirmation, prompt, Dialogs::OkCancel, QStringLiteral("Подтверждение"))
        != Dialogs::ResultOk)
        return;
    try {
        TFIBDataSet *ds = DS->DataSet();
        if (!ds)
            throw EDatabaseError(QStringLiteral("Dataset not assigned"));
        const QVariant id = ds->FieldByName(QStringLiteral("ID"))->Value();
        StartTransaction();
        Query->ExecProcedure(ProcPrefix + QStringLiteral("Del"), {id});
        actRefresh->Execute();
    } catch (const EFIBInterBaseError &error) {
        // A stored procedure's refusal reaches the user as its own text.
        Dialogs::Current().Show(Dialogs::Error, error.Message());
    } catch (const std::exception &error) {
        Dialogs::Current().Show(Dialogs::Error, errorHeading(error));
    }
}

void TGridFrame::GridViewDblClick(QObject *)
{
    if (actEdit->isEnabled() && actEdit->isVisible())
        actEditExecute(this);
    else if (actDblClick->isEnabled() && actDblClick->isVisible())
        actDblClick->Execute();
}

void TGridFrame::FitColumnsToContents(TFIBDataSet &dataSet)
{
    GridView->SetColumnAutoWidth(false);
    connect(GridView, &TDBGridView::ColumnsChanged, this, [this] { GridView->resizeColumnsToContents(); });
    connect(&dataSet, &TFIBDataSet::Opened, this, [this, &dataSet] {
        if (m_columnsFitted || dataSet.IsEmpty())
            return;
        m_columnsFitted = true;
        QTimer::singleShot(0, GridView, [view = GridView] { view->resizeColumnsToContents(); });
    });
}

void TGridFrame::ReadColumnCaption()
{
    QWidget *owner = OwnerForm();
    const QString section = (owner ? owner->objectName() : QString()) + QLatin1Char('.') + objectName();
    const TCaptionsFile ini;
    for (TGridColumn *column : GridView->ColumnList()) {
        const QString caption = ini.Read(section, column->FieldName(), column->Caption());
        if (caption != column->Caption())
            column->SetCaption(caption);
    }
}

void TGridFrame::WriteColumnCaption(QObject *)
{
    QWidget *owner = OwnerForm();
    const QString section = (owner ? owner->objectName() : QString()) + QLatin1Char('.') + objectName();
    TCaptionsFile ini;
    for (TGridColumn *column : GridView->ColumnList())
        ini.Write(section, column->FieldName(), column->Caption());
}

void TGridFrame::miExcelExportClick(QObject *)
{
    // The system's unique temporary file is left where it is; the export goes beside it.
    QTemporaryFile temporary(QDir::tempPath() + QStringLiteral("/~XXXXXX"));
    temporary.setAutoRemove(false);
    if (!temporary.open())
        throw EDatabaseError(QStringLiteral("Не удалось создать временный файл"));
    const QFileInfo made(temporary.fileName());
    temporary.close();
    const QString fileName = made.absolutePath() + QLatin1Char('/') + made.completeBaseName() + QStringLiteral(".xlsx");
    TGridExport::ToXlsx(GridView, fileName);
    Shell::Current().Open(fileName);
}
