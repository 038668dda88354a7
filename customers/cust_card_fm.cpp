#include "cust_card_fm.h"

#include "data_dm.h"
#include "db_editors.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "ui_cust_card_fm.h"

TCustCardFM::TCustCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName, QWidget *parent)
    : TComplexFM(QStringLiteral("CustCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::CustCardFM>())
{
    ui->setupUi(pnlMain);
    pcInfo = ui->pcInfo;
    pcReferences = ui->pcReferences;
    frmOrders = ui->frmOrders;
    frmPayments = ui->frmPayments;
    resize(960, 860);
    FormCreate(this);
}

TCustCardFM::~TCustCardFM() = default;

void TCustCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    TDataDM &dm = *DataDM;
    const int readOnly = faAdd | faEdit | faDel;
    m_frames = {
        {frmOrders, QStringLiteral("История заказов клиента"), &dm.spCustOrderOpen, QStringLiteral("spCustOrder"), {},
         QString(), QStringLiteral("Добавить заказ по данному клиенту"),
         QStringLiteral("Редактировать заказ по данному клиенту"),
         QStringLiteral("Вы уверены, что хотите удалить заказ по данному клиенту?"), readOnly, readOnly},
        {frmPayments, QStringLiteral("История платежей клиента"), &dm.spCustPayOpen, QString(), {},
         QString(), QString(), QString(), QString(), readOnly, readOnly},
    };
    m_frames.Apply();
}

void TCustCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    QVariant id;
    if (auto *editor = dynamic_cast<TDBTextEdit *>(FindFormControl(QStringLiteral("TCXID")))) {
        TFIBField *field = editor->DataBinding().Field();
        id = field ? field->Value() : editor->EditValue();
    }
    for (TGridFrame *frame : {frmOrders, frmPayments}) {
        frame->DS->DataSet()->ParamByName(QStringLiteral("IDCUST")).SetValue(id);
        frame->actRefresh->Execute();
    }
    if (TGridColumn *object = frmPayments->GridView->FindColumnByFieldName(QStringLiteral("IDOBJ_LKP_OBJECT_F_OBJNAME")))
        object->SetVisible(false);
    pcInfo->setCurrentIndex(0);
    pcReferences->setCurrentIndex(0);
}
