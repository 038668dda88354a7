#include "payment_card_fm.h"

#include "app_exception.h"
#include "data_dm.h"
#include "lookup_combo_box.h"
#include "ui_payment_card_fm.h"

#include <QPushButton>

const QString TPaymentCardFM::PurposeField = QStringLiteral("PURPOSE_LKP_PURPOSE_F_PURPOSE");
const QString TPaymentCardFM::CustomerField = QStringLiteral("IDCUST_LKP_CUST_F_CUSTNAME");
const QString TPaymentCardFM::ObjectField = QStringLiteral("IDOBJ_LKP_OBJECT_F_OBJNAME");
const QString TPaymentCardFM::TypeField = QStringLiteral("PTYPE_LKP_PAYTYPE_F_PAYNAME");
const QString TPaymentCardFM::NoPurposeText = QStringLiteral("Выберите назначение платежа");
const QString TPaymentCardFM::NoCounterpartyText = QStringLiteral("Выберите клиента или объект платежа");

namespace {

bool Blank(const QVariant &value)
{
    return !value.isValid() || value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isEmpty());
}

} // namespace

TPaymentCardFM::TPaymentCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                               QWidget *parent)
    : TMoneyCardFM(QStringLiteral("PaymentCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::PaymentCardFM>())
{
    ui->setupUi(pnlMain);
    btnPrixod = ui->btnPrixod;
    btnRasxod = ui->btnRasxod;
    for (QPushButton *button : {btnPrixod, btnRasxod})
        connect(button, &QPushButton::clicked, this, [this, button] {
            try {
                btnDirectionClick(button);
            } catch (...) {
                HandleCurrentException();
            }
        });
    resize(720, 470);
    FormCreate(this);
}

TPaymentCardFM::~TPaymentCardFM() = default;

void TPaymentCardFM::AfterUserChange(const QString &field, void (TPaymentCardFM::*handler)(QObject *))
{
    auto *editor = dynamic_cast<TLookupComboBox *>(BoxEditor(field));
    if (!editor)
        return;
    const std::function<void()> link = editor->OnUserChange;
    editor->OnUserChange = [this, link, editor, handler] {
        if (link)
            link();
        try {
            (this->*handler)(editor);
        } catch (...) {
            HandleCurrentException();
        }
    };
}

void TPaymentCardFM::FormShow(QObject *sender)
{
    TMoneyCardFM::FormShow(sender);
    m_reopening = false;
    if (!m_handlersSet) {
        m_handlersSet = true;
        // The purpose's handler stays unattached: its round would clear the purpose just chosen.
        AfterUserChange(ObjectField, &TPaymentCardFM::ObjectChange);
        AfterUserChange(CustomerField, &TPaymentCardFM::CustomerChange);
    }
    TDataDM &dm = *DataDM;
    const struct
    {
        const QString &field;
        TDataSource *list;
    } lists[] = {{PurposeField, &dm.dsPurposesOpen}, {CustomerField, &dm.dsClientsOpen}, {ObjectField, &dm.dsObjectOpen}};
    for (const auto &entry : lists)
        if (auto *lookup = dynamic_cast<TLookupComboBox *>(BoxEditor(entry.field))) {
            TEditProperties properties = lookup->Properties();
            properties.ListSource = entry.list;
            lookup->SetProperties(properties);
        }
    TFIBField *type = DataSet() ? DataSet()->FindField(TypeField) : nullptr;
    (type && type->Value().toInt() >= 2 ? btnRasxod : btnPrixod)->click();
}

void TPaymentCardFM::btnDirectionClick(QPushButton *sender)
{
    btnPrixod->setChecked(false);
    btnRasxod->setChecked(false);
    sender->setChecked(true);
    Direction = btnPrixod->isChecked() ? 1 : 2;
    TryReopenDatasets(rmPurpose);
}

void TPaymentCardFM::PurposeChange(QObject *)
{
    TryReopenDatasets(rmPurpose);
}

void TPaymentCardFM::CustomerChange(QObject *)
{
    TryReopenDatasets(rmCustomer);
}

void TPaymentCardFM::ObjectChange(QObject *)
{
    TryReopenDatasets(rmObject);
}

void TPaymentCardFM::TryReopenDatasets(int mode)
{
    if (m_reopening)
        return;
    m_reopening = true;
    try {
        ReopenDatasets(mode);
    } catch (...) {
        m_reopening = false;
        throw;
    }
    m_reopening = false;
}

int TPaymentCardFM::ReopenList(TFIBDataSet &list, bool withChoice)
{
    list.ParamByName(QStringLiteral("IDPAYTYPE")).SetValue(Direction);
    if (withChoice) {
        list.ParamByName(QStringLiteral("IDCUST")).SetValue(BoxValue(CustomerField));
        list.ParamByName(QStringLiteral("IDOBJ")).SetValue(BoxValue(ObjectField));
    }
    list.Close();
    list.Open();
    list.FetchAll();
    if (list.RecordCount() != 1)
        return -1;
    list.First();
    return 0;
}

void TPaymentCardFM::ReopenDatasets(int mode)
{
    if (mode == rmPurpose)
        SetBoxValue(PurposeField, QVariant());
    else if (mode == rmObject)
        SetBoxValue(CustomerField, QVariant());
    else if (mode == rmCustomer) {
        SetBoxValue(ObjectField, QVariant());
        SetBoxValue(QStringLiteral("SUMM"), QVariant());
    }

    TDataDM &dm = *DataDM;
    const QString id = QStringLiteral("ID");
    const bool onePurpose = ReopenList(dm.spPurposesOpen, false) == 0;
    SetBoxValue(PurposeField, onePurpose ? dm.spPurposesOpen.FieldByName(id)->Value() : QVariant());

    if (ReopenList(dm.spClientsOpen, true) == 0)
        SetBoxValue(CustomerField, dm.spClientsOpen.FieldByName(id)->Value());

    if (ReopenList(dm.spObjectOpen, true) == 0) {
        SetBoxValue(ObjectField, dm.spObjectOpen.FieldByName(id)->Value());
        SetBoxValue(QStringLiteral("SUMM"), dm.spObjectOpen.FieldByName(QStringLiteral("PAYDIFF"))->Value());
    }
}

void TPaymentCardFM::CreateDataArray()
{
    TMoneyCardFM::CreateDataArray();
    SetArrayValue(TypeField, Direction);
    for (const QString &field : {PurposeField, CustomerField, ObjectField})
        SetArrayValue(field, BoxValue(field));
}

QString TPaymentCardFM::Refusal()
{
    if (Blank(BoxValue(PurposeField)))
        return NoPurposeText;
    if (Blank(BoxValue(CustomerField)) && Blank(BoxValue(ObjectField)))
        return NoCounterpartyText;
    return SumRefusal(BoxValue(QStringLiteral("SUMM")));
}
