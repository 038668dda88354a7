#include "orders_card_fm.h"

#include "app_exception.h"
#include "common.h"
#include "cust_dialog_fm.h"
#include "data_dm.h"
#include "db_editors.h"
#include "dialogs.h"
#include "dict_fm.h"
#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_summary.h"
#include "grid_view.h"
#include "ord_line_cards.h"
#include "quick_add_lookup.h"
#include "ui_orders_card_fm.h"

#include <QCheckBox>
#include <QDateTime>
#include <QPushButton>

#include <algorithm>
#include <cmath>

const QString TOrdersCardFM::DiscountQuestion = QStringLiteral("Обновить значение скидки на всех позициях в данном заказе?");
const QString TOrdersCardFM::MasterQuestion = QStringLiteral("Обновить мастера на всех позициях в данном заказе?");
const QString TOrdersCardFM::NoMasterText =
    QStringLiteral("Мастер не выбран: пустое значение нельзя преобразовать в число");
const QString TOrdersCardFM::FooterFormat = QStringLiteral("# ### ###.00 ");

const TOrdersCardFM::TCellRule TOrdersCardFM::CellRules[] = {
    {"HOURS", 0, 1e6, "Количество часов должно быть от 0 до 1 000 000"},
    {"OCNT", 1, 1e6, "Количество должно быть целым числом от 1 до 1 000 000"},
    {"DISCOUNT", 0, 100, "Скидка должна быть от 0 до 100 %"},
};

namespace {

const QString kConfirmation = QStringLiteral("Подтверждение");

// The first child of the box named like the field, when it is a `Editor`.
template <class Editor>
Editor *BoxEditor(TComplexFM *card, const QString &field)
{
    QWidget *box = card->FindFormControl(field);
    if (!box)
        return nullptr;
    const QList<QWidget *> children = box->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    return children.isEmpty() ? nullptr : dynamic_cast<Editor *>(children.first());
}

bool Blank(const QVariant &value)
{
    return !value.isValid() || value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isEmpty());
}

void StartTransaction(TpFIBQuery *query)
{
    if (query->Transaction() && !query->Transaction()->Active())
        query->Transaction()->StartTransaction();
}

} // namespace

TOrdersCardFM::TOrdersCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TComplexFM(QStringLiteral("OrdersCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::OrdersCardFM>())
{
    ui->setupUi(pnlMain);
    cbPartsReturn = ui->cbPartsReturn;
    cbMaster = ui->cbMaster;
    lcbMaster = ui->lcbMaster;
    btnDiscount = ui->btnDiscount;
    btnMaster = ui->btnMaster;
    TCX_SUMM_BRUTTO = ui->TCX_SUMM_BRUTTO;
    TCX_SUMM_NETTO = ui->TCX_SUMM_NETTO;
    frmOrdParts = ui->frmOrdParts;
    frmOrdServ = ui->frmOrdServ;
    frmOrdMat = ui->frmOrdMat;
    resize(1300, 700);
    FormCreate(this);
}

TOrdersCardFM::~TOrdersCardFM() = default;

void TOrdersCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    TDataDM &dm = *DataDM;
    m_frames = {
        // The parts frame carries the orders' wording.
        {frmOrdParts, QStringLiteral("Запчасти клиента"), &dm.spOrdPartsOpen, QStringLiteral("spOrdParts"),
         CardOf<TDictFM>(), QStringLiteral("spOrdPartsEdit"), QStringLiteral("Новый заказ"),
         QStringLiteral("Редактировать заказ"), QStringLiteral("Вы уверены, что хотите удалить выбранный заказ?")},
        {frmOrdServ, QStringLiteral("Услуги и работы"), &dm.spOrdServOpen, QStringLiteral("spOrdServ"),
         CardOf<TOrdServCardFM>(), QStringLiteral("spOrdServEdit"), QStringLiteral("Добавить услугу/работу"),
         QStringLiteral("Редактировать услугу/работу"), QStringLiteral("Вы уверены, что хотите удалить выбранную услугу?")},
        {frmOrdMat, QStringLiteral("Материалы и товары"), &dm.spOrdMatOpen, QStringLiteral("spOrdMat"),
         CardOf<TOrdMatCardFM>(), QStringLiteral("spOrdMatEdit"), QStringLiteral("Добавить товар/материал"),
         QStringLiteral("Редактировать товар/материал"),
         QStringLiteral("Вы уверены, что хотите удалить выбранный материал?")},
    };
    m_frames.Apply();

    frmOrdServ->actAdd->OnExecute = [this](QObject *s) { frmOrdServToolButton2Click(s); };
    // Materials are added through the multi-select of the materials card.
    frmOrdMat->actAdd->OnExecute = [this](QObject *s) { frmOrdMatToolButton2Click(s); };
    frmOrdMat->actEdit->OnExecute = [this](QObject *s) { frmOrdMatToolButton3Click(s); };
    connect(frmOrdServ->GridView, &TDBGridView::EditValueChanged, this,
            [this](TGridColumn *item) { frmOrdServGridViewEditValueChanged(frmOrdServ->GridView, item); });
    connect(frmOrdMat->GridView, &TDBGridView::EditValueChanged, this,
            [this](TGridColumn *item) { frmOrdMatGridViewEditValueChanged(frmOrdMat->GridView, item); });

    TEditProperties master(TEditKind::Lookup);
    master.ListSource = &dm.dsEmplOpen;
    master.KeyFieldNames = QStringLiteral("ID");
    master.ListFieldNames = QStringLiteral("EMPLNAME");
    master.ListHeaderVisible = false;
    lcbMaster->SetProperties(master);

    const auto guarded = [](auto handler) {
        return [handler] {
            try {
                handler();
            } catch (...) {
                ReportApplicationError();
            }
        };
    };
    connect(btnDiscount, &QPushButton::clicked, this, guarded([this] { btnDiscountClick(btnDiscount); }));
    connect(btnMaster, &QPushButton::clicked, this, guarded([this] { btnMasterClick(btnMaster); }));
}

QVariant TOrdersCardFM::OrderId() const
{
    QVariant id;
    GetIntValue(QStringLiteral("ID"), id);
    return id;
}

void TOrdersCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    const bool first = !m_handlersSet;
    m_handlersSet = true;
    if (first)
        for (TGridFrame *frame : {frmOrdServ, frmOrdMat})
            connect(frame->GridView->Summary(), &TGridSummary::AfterSummary, this,
                    [this, frame] { frmOrdServGridViewDataControllerSummaryAfterSummary(frame->GridView); });

    DataDM->spEmplOpen.Close();
    DataDM->spEmplOpen.Open();
    lcbMaster->SetEditValue(QVariant());

    TFIBField *returnZp = DataSet() ? DataSet()->FindField(QStringLiteral("RETURNZP")) : nullptr;
    cbPartsReturn->setChecked(returnZp && returnZp->Value().toInt() == 1);

    const QVariant id = OrderId();
    for (TGridFrame *frame : {frmOrdParts, frmOrdServ, frmOrdMat}) {
        frame->DS->DataSet()->ParamByName(QStringLiteral("IDORDER")).SetValue(id);
        frame->actRefresh->Execute();
    }

    const struct
    {
        TGridFrame *frame;
        QStringList columns;
    } editable[] = {{frmOrdServ, {QStringLiteral("HOURS"), QStringLiteral("DISCOUNT")}},
                    {frmOrdMat, {QStringLiteral("OCNT"), QStringLiteral("DISCOUNT")}}};
    for (const auto &entry : editable) {
        entry.frame->GridView->SetEditing(true);
        for (TGridColumn *column : entry.frame->GridView->ColumnList())
            column->SetEditable(entry.columns.contains(column->FieldName()));
    }

    for (TGridFrame *frame : {frmOrdServ, frmOrdMat})
        if (!frame->GridView->FooterVisible())
            AddFooterSums(frame);

    if (first) {
        TDataDM &dm = *DataDM;
        InstallQuickAdd(this, {{QStringLiteral("MODEL_LKP_MODEL_F_MODNAME"), QStringLiteral("spModEdit"), &dm.spModelOpen},
                               {QStringLiteral("MARK_LKP_MARK_F_MARKNAME"), QStringLiteral("spMarkEdit"), &dm.spMarkOpen},
                               {QStringLiteral("TYPE_LKP_ATYPE_F_ATYPENAME"), QStringLiteral("spATypeEdit"), &dm.spATypeOpen},
                               {QStringLiteral("YEAR_LKP_AYEAR_F_AYEARNAME"), QStringLiteral("spYearEdit"), &dm.spAYearOpen}});
        if (auto *status = BoxEditor<TDBLookupComboBox>(this, QStringLiteral("IDSTATUS_LKP_OSTATE_F_STATENAME"))) {
            // After the data link has written the new status into the row.
            const std::function<void()> link = status->OnUserChange;
            status->OnUserChange = [this, link, status] {
                if (link)
                    link();
                IDSTATUS_LKP_OSTATE_F_STATENAME_Change(status);
            };
        }
        if (auto *customer = BoxEditor<TDBButtonEdit>(this, QStringLiteral("DLG_IDCUST")))
            customer->OnButtonClick = [this, customer](int index) {
                try {
                    DLG_IDCUST_Click(customer, index);
                } catch (...) {
                    HandleCurrentException();
                }
            };
    }

    const QString mark = CurrencyWords().Val1;
    for (TCurrencyEdit *total : {TCX_SUMM_NETTO, TCX_SUMM_BRUTTO}) {
        TEditProperties money(TEditKind::Currency);
        money.DisplayFormat = QStringLiteral(",0.00 ") + mark + QStringLiteral(";-,0.00 ") + mark;
        total->SetProperties(money);
    }
    frmOrdServGridViewDataControllerSummaryAfterSummary(frmOrdServ->GridView);
}

void TOrdersCardFM::AddFooterSums(TGridFrame *frame)
{
    TDBGridView *view = frame->GridView;
    view->SetFooterVisible(true);
    for (const char *field : {"SUMM0", "SUMM"})
        if (TGridColumn *column = view->FindColumnByFieldName(QLatin1String(field)))
            view->Summary()->Add(column, FooterFormat + CurrencyWords().Val1);
}

void TOrdersCardFM::frmOrdServGridViewDataControllerSummaryAfterSummary(QObject *)
{
    const auto sum = [](TGridFrame *frame, int index) {
        const QVariant value = frame->GridView->Summary()->Sum(index);
        return value.isValid() ? value.toDouble() : 0.0;
    };
    TCX_SUMM_BRUTTO->SetEditValue(sum(frmOrdMat, 0) + sum(frmOrdServ, 0));
    TCX_SUMM_NETTO->SetEditValue(sum(frmOrdMat, 1) + sum(frmOrdServ, 1));
}

double TOrdersCardFM::CellValue(TFIBDataSet *dataSet, const QString &field)
{
    const QVariant value = dataSet->FieldByName(field)->Value();
    if (Blank(value))
        return 0;
    bool ok = false;
    const double number = value.toString().replace(QLatin1Char(','), QLatin1Char('.')).toDouble(&ok);
    const TCellRule *rule = std::find_if(std::begin(CellRules), std::end(CellRules),
                                         [&](const TCellRule &r) { return field == QLatin1String(r.field); });
    if (!ok || (rule != std::end(CellRules) && (number < rule->min || number > rule->max)))
        throw EConvertError(rule != std::end(CellRules) ? QString::fromUtf8(rule->message)
                                                        : QStringLiteral("Значение «%1» не является числом").arg(value.toString()));
    return number;
}

void TOrdersCardFM::SaveLine(TGridFrame *frame, const std::function<void(TFIBDataSet *)> &save)
{
    TFIBDataSet *ds = frame->DS->DataSet();
    try {
        if (ds->State() == dsEdit || ds->State() == dsInsert)
            ds->Post();
        StartTransaction(frame->Query);
        save(ds);
    } catch (const std::exception &error) {
        if (ds->State() == dsEdit || ds->State() == dsInsert)
            ds->Cancel();
        Dialogs::Current().Show(Dialogs::Error, ExceptionMessage(error));
    }
    // Brings back what the triggers computed, or what is stored after a refusal.
    frame->actRefresh->Execute();
}

void TOrdersCardFM::frmOrdServGridViewEditValueChanged(QObject *, TGridColumn *)
{
    SaveLine(frmOrdServ, [this](TFIBDataSet *ds) {
        const QVariant id = ds->FieldByName(QStringLiteral("ID"))->AsInteger();
        const double hours = CellValue(ds, QStringLiteral("HOURS"));
        const double discount = CellValue(ds, QStringLiteral("DISCOUNT"));
        frmOrdServ->Query->ExecProcedure(QStringLiteral("spOrdServValuesEdit"), {id, hours, discount});
    });
}

void TOrdersCardFM::frmOrdMatGridViewEditValueChanged(QObject *, TGridColumn *)
{
    SaveLine(frmOrdMat, [this](TFIBDataSet *ds) {
        const QVariant id = ds->FieldByName(QStringLiteral("ID"))->AsInteger();
        const double count = CellValue(ds, QStringLiteral("OCNT"));
        const double discount = CellValue(ds, QStringLiteral("DISCOUNT"));
        if (count != std::floor(count))
            throw EConvertError(QString::fromUtf8(CellRules[1].message));
        // The order's number attaches a line made with none.
        frmOrdMat->Query->ExecProcedure(QStringLiteral("spOrdMatValuesEdit"), {id, OrderId(), count, discount});
    });
}

void TOrdersCardFM::btnDiscountClick(QObject *)
{
    if (Dialogs::Current().Show(Dialogs::Confirmation, DiscountQuestion, Dialogs::OkCancel, kConfirmation)
        != Dialogs::ResultOk)
        return;
    TFIBDataSet *ds = DataSet();
    if (ds->State() == dsEdit || ds->State() == dsInsert)
        ds->Post();
    const double discount = CellValue(ds, QStringLiteral("DISCOUNT"));
    StartTransaction(frmOrdServ->Query);
    frmOrdServ->Query->ExecProcedure(QStringLiteral("spOrdServUpdDiscount"), {OrderId(), discount});
    frmOrdServ->actRefresh->Execute();
}

void TOrdersCardFM::btnMasterClick(QObject *)
{
    if (Dialogs::Current().Show(Dialogs::Confirmation, MasterQuestion, Dialogs::OkCancel, kConfirmation)
        != Dialogs::ResultOk)
        return;
    TFIBDataSet *ds = DataSet();
    if (ds->State() == dsEdit || ds->State() == dsInsert)
        ds->Post();
    const QVariant master = lcbMaster->EditValue();
    bool ok = false;
    const int employee = master.toInt(&ok);
    if (Blank(master) || !ok)
        throw EConvertError(NoMasterText);
    StartTransaction(frmOrdServ->Query);
    frmOrdServ->Query->ExecProcedure(QStringLiteral("spOrdServUpdEmployee"), {OrderId(), employee});
    frmOrdServ->actRefresh->Execute();
}

void TOrdersCardFM::frmOrdServToolButton2Click(QObject *sender)
{
    frmOrdServ->actAddExecute(sender);
}

void TOrdersCardFM::frmOrdMatToolButton2Click(QObject *sender)
{
    frmOrdMat->Test(sender);
}

void TOrdersCardFM::frmOrdMatToolButton3Click(QObject *sender)
{
    frmOrdMat->actEditExecute(sender);
}

void TOrdersCardFM::IDSTATUS_LKP_OSTATE_F_STATENAME_Change(QObject *)
{
    if (auto *date = BoxEditor<TDBDateEdit>(this, QStringLiteral("STATUS_DATE"))) {
        date->SetEditValue(QDateTime::currentDateTime());
        PostEditValue(date);
    }
}

void TOrdersCardFM::DLG_IDCUST_Click(QObject *, int)
{
    TCustDialogFM dialog(this);
    if (!dialog.Execute())
        return;
    TFIBDataSet *customers = dialog.frmCust->DS->DataSet();
    if (!customers || !customers->Active() || customers->IsEmpty())
        return;
    TFIBDataSet *ds = DataSet();
    ds->Edit();
    const struct
    {
        const char *from;
        const char *to;
    } copied[] = {{"ID", "SYS_IDCUST"}, {"CUSTNAME", "DLG_IDCUST"}, {"ADDRESS", "ADDRESS"}, {"MOBI_PHONE", "MOBI_PHONE"}};
    for (const auto &field : copied)
        ds->FieldByName(QLatin1String(field.to))->SetValue(customers->FieldByName(QLatin1String(field.from))->Value());
    ds->Post();
}

void TOrdersCardFM::actOKExecute(QObject *sender)
{
    const QList<QWidget *> editors = {
        BoxEditor<TDBTextEdit>(this, QStringLiteral("NUM")),
        BoxEditor<TDBDateEdit>(this, QStringLiteral("CREATE_DATE")),
        BoxEditor<TDBLookupComboBox>(this, QStringLiteral("IDSTATUS_LKP_OSTATE_F_STATENAME")),
        BoxEditor<TDBTextEdit>(this, QStringLiteral("REG")),
        BoxEditor<TDBButtonEdit>(this, QStringLiteral("DLG_IDCUST")),
        BoxEditor<TDBLookupComboBox>(this, QStringLiteral("TYPE_LKP_ATYPE_F_ATYPENAME")),
        BoxEditor<TDBLookupComboBox>(this, QStringLiteral("MARK_LKP_MARK_F_MARKNAME")),
        BoxEditor<TDBLookupComboBox>(this, QStringLiteral("MODEL_LKP_MODEL_F_MODNAME")),
    };
    SetModalResult(mrNone);
    for (QWidget *editor : editors)
        if (auto *value = dynamic_cast<TValueEditor *>(editor); value && !Blank(value->EditValue())) {
            SetModalResult(mrOk);
            break;
        }
    TComplexFM::actOKExecute(sender);
}

void TOrdersCardFM::CreateDataArray()
{
    TComplexFM::CreateDataArray();
    TFIBDataSet *ds = DataSet();
    if (TFIBField *returnZp = ds ? ds->FindField(QStringLiteral("RETURNZP")) : nullptr;
        returnZp && returnZp->Index() < DataArray.size())
        DataArray[returnZp->Index()] = cbPartsReturn->isChecked() ? 1 : 0;
}
