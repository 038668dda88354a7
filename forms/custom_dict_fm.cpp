#include "custom_dict_fm.h"
#include "db_editors.h"

#include "app_exception.h"
#include "data_dm.h"
#include "dialogs.h"
#include "grid_column.h"
#include "grid_view.h"

#include <QLabel>
#include <QVBoxLayout>

const QString TCustomDictFM::SaveQuestion = QStringLiteral("Данные были изменены. Сохранить?");

TCustomDictFM::TCustomDictFM(const QString &formName, TDBGridView *gridView, const QString &namePrefix,
                             const QString &procName, QWidget *parent)
    : TfmDialog(0, parent)
{
    setObjectName(formName);
    Init(procName);
    m_watchesExecuteErrors = true;
    GridView = gridView;
    DataSource = gridView ? gridView->DataSource() : nullptr;
    // Each generated card gets a name of its own, the section of its labels in the ini file.
    if (objectName() == QLatin1String("DictFM"))
        setObjectName(namePrefix + QStringLiteral("DictFM"));
}

TCustomDictFM::TCustomDictFM(const QString &formName, TDataSource *dataSource, const QString &procName, QWidget *parent)
    : TfmDialog(0, parent)
{
    setObjectName(formName);
    Init(procName);
    DataSource = dataSource;
}

void TCustomDictFM::Init(const QString &procName)
{
    CardQuery = new TpFIBQuery(this);
    CardQuery->setObjectName(QStringLiteral("CardQuery"));
    if (DataDM) {
        CardQuery->SetDatabase(&DataDM->pFIBDatabaseMain);
        CardQuery->SetTransaction(&DataDM->pFIBTransaction1);
    }
    ProcName = procName;
    actOK->OnExecute = [this](QObject *sender) { actOKExecute(sender); };
    actCancel->OnExecute = [this](QObject *sender) { actCancelExecute(sender); };
}

void TCustomDictFM::SetEditMode(bool value)
{
    EditMode = value;
}

void TCustomDictFM::AfterOpenDataset()
{
}

void TCustomDictFM::FormShow(QObject *)
{
    CreateControls();
    SetEditMode(EditMode);
    AfterOpenDataset();
}

void TCustomDictFM::actCancelExecute(QObject *)
{
    SetModalResult(mrCancel);
}

void TCustomDictFM::CreateDataArray()
{
    DataArray.clear();
    TFIBDataSet *ds = DataSet();
    if (!GridView) {
        if (ds)
            for (int i = 0; i < ds->FieldCount(); ++i)
                DataArray << ds->Fields(i)->Value();
        return;
    }
    for (int i = 0; i < GridView->ColumnCount(); ++i) {
        TFIBField *field = ds && ds->Active() ? ds->FindField(GridView->Columns(i)->FieldName()) : nullptr;
        DataArray << (field ? field->Value() : QVariant());
    }
}

void TCustomDictFM::ExecuteSave()
{
    if (CardQuery->Transaction() && !CardQuery->Transaction()->Active())
        CardQuery->Transaction()->StartTransaction();
    try {
        CardQuery->ExecProcedure(ProcName, DataArray);
    } catch (const EFIBError &error) {
        if (m_watchesExecuteErrors)
            FIBQueryExecuteError(error);
        throw;
    }
}

void TCustomDictFM::FIBQueryExecuteError(const EFIBError &error)
{
    ErrorText = error.Message().isEmpty() ? error.IBMessage() : error.Message();
    if (ErrorText.isEmpty())
        ErrorText = QString::fromUtf8(error.what());
}

void TCustomDictFM::actOKExecute(QObject *)
{
    if (ModalResult() != mrOk && !SaveWithoutClose)
        return;
    ErrorText.clear();
    try {
        if (TFIBDataSet *ds = DataSet(); !ds || ds->State() != dsBrowse) {
            if (!ds)
                throw EDatabaseError(QStringLiteral("Dataset not assigned"));
            ds->Post();
        }
    } catch (const std::exception &error) {
        ErrorText = ExceptionMessage(error);
        // Another seat holds the row: the user is told, and the card keeps what was typed for another OK.
        if (auto *fib = dynamic_cast<const EFIBError *>(&error); fib && TpFibErrorHandler::KindOf(*fib) == keLockConflict)
            Dialogs::Current().Show(Dialogs::Error, ErrorText);
    }
    if (!ErrorText.isEmpty())
        return;
    CreateDataArray();
    // No protection here: the application's handler shows a failure, and ErrorText keeps the card open.
    ExecuteSave();
}

void TCustomDictFM::FormCloseQuery(QObject *, bool &canClose)
{
    if (ModalResult() == mrOk && !ErrorText.isEmpty())
        SetModalResult(mrNone);
    TFIBDataSet *ds = DataSet();
    if (ModalResult() == mrCancel && ds && ds->State() == dsEdit) {
        // The edit is not cancelled in either case: the grid keeps the typed values until a refresh.
        if (Dialogs::Current().Show(Dialogs::Confirmation, SaveQuestion, Dialogs::OkCancel,
                                    QStringLiteral("Подтверждение"))
            == Dialogs::ResultOk) {
            ds->Post();
            CreateDataArray();
            ExecuteSave();
        }
    }
    canClose = true;
}

QLabel *TCustomDictFM::CreateLabel(QWidget *parent, const QString &caption, const QString &name)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setEnabled(IsEnabled());
    label->setVisible(IsVisible());
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    QFont font = label->font();
    font.setPointSize(10);
    font.setBold(true);
    label->setFont(font);
    label->setFixedHeight(25);
    auto *layout = qobject_cast<QVBoxLayout *>(parent->layout());
    if (!layout) {
        layout = new QVBoxLayout(parent);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addStretch(1);
    }
    // Aligned to the top: under the labels made before.
    layout->insertWidget(layout->count() - 1, label);
    label->setText(caption);
    DoCreateLabel(label);
    return label;
}

QWidget *TCustomDictFM::CreateBoundEditor(TCardEditor kind, const QString &fieldName, const TEditProperties *properties)
{
    auto bind = [&](auto *editor, QPointer<QWidget> &last) {
        editor->SetDataBinding(DataSource, fieldName);
        last = editor;
        return editor;
    };
    auto bindWithProperties = [&](auto *editor, QPointer<QWidget> &last) {
        if (properties)
            editor->SetProperties(*properties);
        return bind(editor, last);
    };
    switch (kind) {
    case TCardEditor::Lookup: return bindWithProperties(new TDBLookupComboBox(this), LastLookup);
    case TCardEditor::Memo: return bind(new TDBMemo(this), LastMemo);
    case TCardEditor::Button: return bind(new TDBButtonEdit(this), LastButton);
    case TCardEditor::Date:
    case TCardEditor::DateTime: return bindWithProperties(new TDBDateEdit(this), LastDate);
    case TCardEditor::Currency: return bindWithProperties(new TDBCurrencyEdit(this), LastCurrency);
    case TCardEditor::Text: break;
    }
    return bind(new TDBTextEdit(this), LastText);
}
