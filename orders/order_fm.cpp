#include "order_fm.h"

#include "choice_editors.h"
#include "fib_xsqlvar.h"
#include "data_dm.h"
#include "date_edit.h"
#include "filter_panel.h"
#include "grid_frame.h"
#include "lookup_combo_box.h"
#include "order_document.h"
#include "orders_card_fm.h"
#include "select_print_doc_fm.h"
#include "text_editors.h"


#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

const QString TOrderFM::Caption = QStringLiteral("Журнал заказов");

const TOrderFM::TDocKind TOrderFM::DocKinds[5] = {{"cxCheckBox1", "Заявка", "zakaz"},
                                                   {"cxCheckBox2", "Заказ-наряд", "zakaz-nar"},
                                                   {"cxCheckBox3", "Счет", "schet"},
                                                   {"cxCheckBox4", "Счет-фактура", "schet-fact"},
                                                   {"cxCheckBox5", "Акт", "act"}};

namespace {

template <class Editor>
Editor *Make(QWidget *parent, const char *name)
{
    auto *editor = new Editor(parent);
    editor->setObjectName(QLatin1String(name));
    return editor;
}

} // namespace

TOrderFM::TOrderFM(TMainWindowLink *mainWindow, QWidget *parent) : TfmBase(mainWindow, parent)
{
    setObjectName(QStringLiteral("OrderFM"));
    setWindowTitle(Caption);

    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(2, 2, 2, 2);
    gbFilter = new QGroupBox(QStringLiteral("Параметры выбора"), pnlMain);
    gbFilter->setObjectName(QStringLiteral("gbFilter"));
    gbFilter->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(gbFilter);
    row->setContentsMargins(6, 4, 6, 6);

    auto *gbPeriod = new QGroupBox(QStringLiteral("За период"), gbFilter);
    gbPeriod->setObjectName(QStringLiteral("gbPeriod"));
    auto *period = new QHBoxLayout(gbPeriod);
    deUp = Make<TDateEdit>(gbPeriod, "deUp");
    deTo = Make<TDateEdit>(gbPeriod, "deTo");
    for (auto [caption, editor] : {std::pair{"С: ", deUp}, std::pair{" по : ", deTo}}) {
        auto *label = new QLabel(QString::fromUtf8(caption), gbPeriod);
        label->setObjectName(editor->objectName() + QStringLiteral("Lbl"));
        label->setBuddy(editor);
        period->addWidget(label);
        period->addWidget(editor);
        editor->setMinimumWidth(110);
    }
    row->addWidget(gbPeriod);

    auto *gbOrder = new QGroupBox(QStringLiteral("Заказ"), gbFilter);
    gbOrder->setObjectName(QStringLiteral("gbOrder"));
    auto *order = new QHBoxLayout(gbOrder);
    lcbOStateMain = Make<TLookupComboBox>(gbOrder, "lcbOStateMain");
    edNum = Make<TTextEdit>(gbOrder, "edNum");
    lcbCust = Make<TLookupComboBox>(gbOrder, "lcbCust");
    order->addLayout(CaptionOver(gbOrder, QStringLiteral("Статус"), lcbOStateMain, 140));
    order->addLayout(CaptionOver(gbOrder, QStringLiteral("№ пп"), edNum, 100));
    order->addLayout(CaptionOver(gbOrder, QStringLiteral("Клиент"), lcbCust, 180));
    row->addWidget(gbOrder);

    auto *gbAuto = new QGroupBox(QStringLiteral("Авто"), gbFilter);
    gbAuto->setObjectName(QStringLiteral("gbAuto"));
    auto *vehicle = new QHBoxLayout(gbAuto);
    edReg = Make<TTextEdit>(gbAuto, "edReg");
    lcbMark = Make<TLookupComboBox>(gbAuto, "lcbMark");
    lcbModel = Make<TLookupComboBox>(gbAuto, "lcbModel");
    vehicle->addLayout(CaptionOver(gbAuto, QStringLiteral("Госномер"), edReg, 100));
    vehicle->addLayout(CaptionOver(gbAuto, QStringLiteral("Марка"), lcbMark, 130));
    vehicle->addLayout(CaptionOver(gbAuto, QStringLiteral("Модель"), lcbModel, 130));
    row->addWidget(gbAuto);

    cbDel = Make<TCheckBoxEdit>(gbFilter, "cbDel");
    cbDel->setText(QStringLiteral("Удаленные"));
    row->addWidget(cbDel, 0, Qt::AlignBottom);
    row->addStretch(1);
    layout->addWidget(gbFilter);

    frmOrders = new TGridFrame(pnlMain, QStringLiteral("frmOrders"));
    layout->addWidget(frmOrders, 1);

    actPrint = new TAction(ActionList, QStringLiteral("actPrint"), QStringLiteral("Печать"), 15);
    actPrint->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    actPrint->OnExecute = [this](QObject *sender) { actPrintExecute(sender); };
    ToolButton5 = new QToolButton(frmOrders->sToolBar1);
    ToolButton5->setObjectName(QStringLiteral("ToolButton5"));
    ToolButton5->setDefaultAction(actPrint);
    ToolButton5->setFixedSize(40, 40);
    ToolButton5->setIconSize(QSize(24, 24));
    frmOrders->sToolBar1->addWidget(ToolButton5);

    resize(1200, 720);
    FormCreate(this);
}

TOrderFM::~TOrderFM() = default;

void TOrderFM::FormCreate(QObject *sender)
{
    TfmBase::FormCreate(sender);
    TDataDM &dm = *DataDM;
    SetFilterLookup(lcbOStateMain, &dm.dsOStateMain, QStringLiteral("STATENAME"));
    SetFilterLookup(lcbCust, &dm.dsCustOpen, QStringLiteral("CUSTNAME"));
    SetFilterLookup(lcbMark, &dm.dsMarkOpen, QStringLiteral("MARKNAME"));
    SetFilterLookup(lcbModel, &dm.dsModelOpen, QStringLiteral("MODNAME"));
    m_filters = {{deUp, QStringLiteral("F_DATE_UP"), TFilterKind::Day},
                 {deTo, QStringLiteral("F_DATE_TO"), TFilterKind::Day},
                 {lcbOStateMain, QStringLiteral("F_IDOSTATE"), TFilterKind::Raw},
                 {edNum, QStringLiteral("F_NUM"), TFilterKind::Contains},
                 {lcbCust, QStringLiteral("F_IDCUST"), TFilterKind::Raw},
                 {edReg, QStringLiteral("F_REG"), TFilterKind::Contains},
                 {lcbMark, QStringLiteral("F_IDMARK"), TFilterKind::Raw},
                 {lcbModel, QStringLiteral("F_IDMODEL"), TFilterKind::Raw},
                 {cbDel, QStringLiteral("F_DEL"), TFilterKind::Check}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmOrders;

    TFrameSettings orders{frmOrders, QStringLiteral("Заказы"), &dm.spOrdersOpen, QStringLiteral("spOrder"),
                          CardOf<TOrdersCardFM>(),
                          QStringLiteral("spOrderEdit"), QStringLiteral("Новый заказ"),
                          QStringLiteral("Редактировать заказ"),
                          QStringLiteral("Вы уверены, что хотите удалить выбранный заказ?")};
    orders.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {orders};
    m_frames.Apply();
    frmOrders->FitColumnsToContents(dm.spOrdersOpen);
}

void TOrderFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    // Setting the period must not arm the timer: the refresh below is the only one.
    ShowLastDays(deUp, deTo, [this] { FilterChange(); });
    m_frames.Refresh();
    // After the grid: the lists may have changed in other windows.
    for (TpFIBDataSet *list : {&DataDM->spOStateMain, &DataDM->spCustOpen, &DataDM->spMarkOpen, &DataDM->spModelOpen}) {
        list->Close();
        list->Open();
    }
}

void TOrderFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TOrderFM::actPrintExecute(QObject *)
{
    TSelectPrintDocFM dialog(this);
    if (dialog.ShowModal() != mrOk)
        return;
    for (const TDocKind &doc : DocKinds) {
        auto *box = dialog.findChild<QCheckBox *>(QLatin1String(doc.box));
        if (!box || !box->isChecked())
            continue;
        TFIBDataSet *ds = frmOrders->DS->DataSet();
        const int id = ds && ds->Active() && !ds->IsEmpty() ? ds->FieldByName(QStringLiteral("ID"))->AsInteger() : 0;
        Mak_Zakaz(id, QLatin1String(doc.kind));
    }
}

void TOrderFM::Mak_Zakaz(int, const QString &kind)
{
    // The order is read from the current row, as the caller did.
    TOrderDocument::Make(frmOrders->DS->DataSet(), kind);
}

void TOrderFM::ApplyOrderFilter(const TFilterOrder &filter)
{
    deUp->SetEditValue(SerialToDateTime(filter.DateUp));
    deTo->SetEditValue(SerialToDateTime(filter.DateTo));
    // A lookup takes the row whose shown text is the one sent; any other text clears it.
    const auto pick = [](TLookupComboBox *lookup, const QString &text) {
        const int index = text.isEmpty() ? -1 : lookup->findText(text, Qt::MatchExactly);
        lookup->SetEditValue(index >= 0 ? lookup->itemData(index) : QVariant());
    };
    pick(lcbOStateMain, filter.OState);
    edNum->SetEditValue(filter.Num);
    pick(lcbCust, filter.Cust);
    edReg->SetEditValue(filter.Reg);
    pick(lcbMark, filter.Mark);
    pick(lcbModel, filter.Model);
    FilterChange();
}
