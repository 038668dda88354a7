#include "store_card_fm.h"

#include "app_exception.h"
#include "data_dm.h"
#include "dialogs.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_model.h"
#include "grid_view.h"
#include "materials_dialog_fm.h"
#include "ui_store_card_fm.h"

#include <QAbstractItemDelegate>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>
#include <cmath>

const QString TStoreCardFM::EmptyText = QStringLiteral("Поставка не может быть пустой. Необходимо добавить товары");
const QString TStoreCardFM::EmptyCaption = QStringLiteral("Ошибка");

const TStoreCardFM::TCellRule TStoreCardFM::CellRules[] = {
    {"QUANTITY", 0, 1e6, "Количество должно быть числом больше 0 и не больше 1 000 000"},
    {"PRICEBUY", 0, 1e8, "Цена закупки должна быть числом больше 0 и не больше 100 000 000"},
    {"PRICESELL", 0, 1e8, "Цена продажи должна быть числом больше 0 и не больше 100 000 000"},
};

namespace {

const QString kMaterialField = QStringLiteral("IDMAT_LKP_MAT_F_MATNAME");

bool Blank(const QVariant &value)
{
    return !value.isValid() || value.isNull() || (value.typeId() == QMetaType::QString && value.toString().trimmed().isEmpty());
}

bool Editing(const TFIBDataSet *ds)
{
    return ds && (ds->State() == dsEdit || ds->State() == dsInsert);
}

void StartTransaction(TpFIBQuery *query)
{
    if (query->Transaction() && !query->Transaction()->Active())
        query->Transaction()->StartTransaction();
}

} // namespace

TStoreCardFM::TStoreCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TComplexFM(QStringLiteral("StoreCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::StoreCardFM>())
{
    ui->setupUi(pnlMain);
    frmMaterials = ui->frmMaterials;
    resize(1100, 640);
    FormCreate(this);
}

TStoreCardFM::~TStoreCardFM() = default;

void TStoreCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    // Lines are edited in the grid: the frame has no card, and its edit stays off. The title is the one
    // the rights catalogue knows the grid by.
    TFrameSettings lines{frmMaterials, QStringLiteral("Материалы в поставке"), &DataDM->spStoreMatOpen,
                         QStringLiteral("spStoreMat"), {}, QString(), QStringLiteral("Добавить товарную запись"),
                         QStringLiteral("Редактировать товарную запись"),
                         QStringLiteral("Вы уверены, что хотите удалить выбранную товарную запись?")};
    lines.Disabled = faEdit;
    m_frames = {lines};
    m_frames.Apply();
    frmMaterials->actAdd->OnExecute = [this](QObject *s) { frmMaterialsactAddExecute(s); };
}

void TStoreCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    QVariant id;
    GetIntValue(QStringLiteral("ID"), id);
    frmMaterials->DS->DataSet()->ParamByName(QStringLiteral("IDSTORE")).SetValue(id);
    frmMaterials->actRefresh->Execute();

    TDBGridView *view = frmMaterials->GridView;
    view->SetCellSelect(true);
    view->SetEditing(true);
    const QStringList editable = {QStringLiteral("QUANTITY"), QStringLiteral("PRICEBUY"), QStringLiteral("PRICESELL")};
    for (TGridColumn *column : view->ColumnList())
        column->SetEditable(editable.contains(column->FieldName()));

    if (m_handlersSet)
        return;
    m_handlersSet = true;
    // The grid shares its width by these proportions: the name wants the most.
    const struct
    {
        const char *field;
        int width;
    } widths[] = {{"NUM", 130},      {"STATUS_LKP_PAYSTATUS_F_STATUS", 110}, {"MATNAME", 260},
                  {"ARTICUL", 100},  {"SCODE", 100},     {"QUANTITY", 100},  {"PRICEBUY", 115},
                  {"PRICESELL", 115}, {"SUMMBUY", 125},  {"SUMMSELL", 125}};
    for (const auto &entry : widths)
        if (TGridColumn *column = view->FindColumnByFieldName(QLatin1String(entry.field)))
            column->SetWidth(entry.width);
    connect(view->Model(), &TGridModel::CellEdited, this, [this](int, int column) { CellEdited(column); });
    // Enter in a cell editor ends the edit with a submit; a change of row does too, having posted already.
    connect(view->itemDelegate(), &QAbstractItemDelegate::closeEditor, this,
            [this](QWidget *, QAbstractItemDelegate::EndEditHint hint) {
                if (hint == QAbstractItemDelegate::SubmitModelCache)
                    QTimer::singleShot(0, this, [this] {
                        if (Editing(frmMaterials->DS->DataSet()) && PostLines())
                            frmMaterials->actRefresh->Execute();
                    });
            });
    view->installEventFilter(this);
}

bool TStoreCardFM::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == frmMaterials->GridView && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            // Enter in the grid is the grid's: it must not press the card's default button.
            // From a cell's editor the submit of its close posts; on the grid itself this does.
            if (frmMaterials->GridView->hasFocus() && Editing(frmMaterials->DS->DataSet()) && PostLines())
                frmMaterials->actRefresh->Execute();
            return true;
        }
    }
    return TComplexFM::eventFilter(watched, event);
}

void TStoreCardFM::CellEdited(int column)
{
    TGridColumn *edited = frmMaterials->GridView->Columns(column);
    TFIBDataSet *ds = frmMaterials->DS->DataSet();
    if (!edited || !ds)
        return;
    const TCellRule *rule = std::find_if(std::begin(CellRules), std::end(CellRules),
                                         [&](const TCellRule &r) { return edited->FieldName() == QLatin1String(r.field); });
    TFIBField *field = ds->FindField(edited->FieldName());
    if (rule == std::end(CellRules) || !field || Blank(field->Value()))
        return;
    bool ok = false;
    const double number = field->Value().toString().trimmed().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    if (ok && std::isfinite(number) && number > rule->min && number <= rule->max)
        return;
    // Taken back before anything can post it; the box waits until the cell's editor has gone.
    ds->Cancel();
    const QString message = QString::fromUtf8(rule->message);
    QTimer::singleShot(0, this, [message] { Dialogs::Current().Show(Dialogs::Error, message); });
}

bool TStoreCardFM::PostLines()
{
    TFIBDataSet *ds = frmMaterials->DS->DataSet();
    if (!Editing(ds))
        return true;
    try {
        StartTransaction(frmMaterials->Query);
        ds->Post();
        return true;
    } catch (const std::exception &error) {
        ds->Cancel();
        Dialogs::Current().Show(Dialogs::Error, ExceptionMessage(error));
    }
    // What is stored comes back in place of the refused values.
    frmMaterials->actRefresh->Execute();
    return false;
}

void TStoreCardFM::frmMaterialsactAddExecute(QObject *)
{
    if (TFIBDataSet *head = DataSet(); Editing(head))
        head->Post();
    if (!PostLines())
        return;
    TMaterialsDialogFM dialog(this);
    if (!dialog.Execute())
        return;
    SaveWithoutClose = true;
    ChosenId = dialog.ChosenId;
    DataDM->ChosenMaterialId = dialog.ChosenId;
    try {
        actOK->Execute();
    } catch (...) {
        // A refused save must not leave its material for the next one.
        SaveWithoutClose = false;
        ChosenId = 0;
        frmMaterials->actRefresh->Execute();
        throw;
    }
    SaveWithoutClose = false;
    frmMaterials->actRefresh->Execute();
}

void TStoreCardFM::CreateDataArray()
{
    TComplexFM::CreateDataArray();
    m_fillsLine = false;
    TFIBDataSet *ds = DataSet();
    TFIBField *material = ds ? ds->FindField(kMaterialField) : nullptr;
    const int at = GridView ? GridView->IndexOf(GridView->FindColumnByFieldName(kMaterialField)) : -1;
    if (ChosenId == 0 || !material || at < 0 || at >= DataArray.size())
        return;
    const bool lineTaken = !Blank(material->Value()) && material->Value().toInt() != 0;
    DataArray[at] = ChosenId;
    if (!lineTaken) {
        m_fillsLine = true;
        return;
    }
    // The card's line has its material already: no line to write over, a new one of the same head.
    const int idAt = GridView->IndexOf(GridView->FindColumnByFieldName(QStringLiteral("ID")));
    if (idAt >= 0 && idAt < DataArray.size())
        DataArray[idAt] = QVariant();
}

void TStoreCardFM::actOKExecute(QObject *sender)
{
    if (!SaveWithoutClose && ModalResult() == mrOk) {
        if (!PostLines()) {
            SetModalResult(mrNone);
            return;
        }
        TFIBDataSet *lines = frmMaterials->DS->DataSet();
        if (!lines || !lines->Active() || lines->IsEmpty()) {
            SetModalResult(mrNone);
            Dialogs::Current().Show(Dialogs::Error, EmptyText, Dialogs::Ok, EmptyCaption);
            return;
        }
    }
    TComplexFM::actOKExecute(sender);
    TFIBDataSet *ds = DataSet();
    if (m_fillsLine && ErrorText.isEmpty() && ds) {
        // The row of the card now stands for a line with this material, so later saves keep it.
        if (!Editing(ds))
            ds->Edit();
        ds->FieldByName(kMaterialField)->SetValue(ChosenId);
    }
    m_fillsLine = false;
    ChosenId = 0;
    if (Editing(ds))
        ds->Post();
}

void TStoreCardFM::FormClose(QObject *sender, TCloseAction &action)
{
    TComplexFM::FormClose(sender, action);
    if (ModalResult() != mrOk)
        if (TFIBDataSet *lines = frmMaterials->DS->DataSet(); Editing(lines))
            lines->Cancel();
    QVariant head;
    GetIntValue(QStringLiteral("SYS_IDSTOREMAT"), head);
    if (Blank(head) || head.toInt() == 0)
        if (TFIBField *field = DataSet() ? DataSet()->FindField(QStringLiteral("SYS_IDSTOREMAT")) : nullptr)
            head = field->Value();
    try {
        StartTransaction(CardQuery);
        CardQuery->ExecProcedure(QStringLiteral("spStoreEmptyDel"), {head});
    } catch (const std::exception &error) {
        // The card closes all the same; the blank line goes at the next close of its operation.
        Dialogs::Current().Show(Dialogs::Error, ExceptionMessage(error));
    }
}
