#include "payment_fm.h"

#include "cash_card.h"
#include "choice_editors.h"
#include "data_dm.h"
#include "date_edit.h"
#include "filter_panel.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "lookup_combo_box.h"
#include "payment_card_fm.h"
#include "text_editors.h"

#include <QHBoxLayout>

const QString TPaymentFM::ObjectField = QStringLiteral("IDOBJ_LKP_OBJECT_F_OBJNAME");

TPaymentFM::TPaymentFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("PaymentFM"), QStringLiteral("frmPayments"), mainWindow, parent), frmPayments(Frame)
{
    TDataDM &dm = *DataDM;
    const QString key = QStringLiteral("ID");
    auto *row = static_cast<QHBoxLayout *>(gbFilter->layout());
    row->insertWidget(0, NewPeriodBox(gbFilter, deUp, deTo));
    const QString typeCaption = QStringLiteral("Тип платежа");
    lcbType = gbFilter->AddLookup(QStringLiteral("lcbType"), typeCaption, &dm.dsPayTypeOpen, key, QStringLiteral("PAYNAME"));
    edPayNum = gbFilter->AddText(QStringLiteral("edPayNum"), QStringLiteral("Номер платежа"));
    lcbPurpose = gbFilter->AddLookup(QStringLiteral("lcbPurpose"), QStringLiteral("Назначение платежа"), &dm.dsPurposeOpen,
                                     key, QStringLiteral("PURPOSE"));
    edClientName = gbFilter->AddText(QStringLiteral("edClientName"), QStringLiteral("Наименование клиента"));
    lcbNal = gbFilter->AddLookup(QStringLiteral("lcbNal"), typeCaption, &dm.dsNalOpen, key, QStringLiteral("NAME"));
    // Seven filters side by side: narrow enough for a netbook's screen, the captions setting the widths.
    for (QWidget *editor : std::initializer_list<QWidget *>{lcbType, edPayNum, lcbPurpose, edClientName, lcbNal})
        editor->setMinimumWidth(100);
    cbDel = new TCheckBoxEdit(gbFilter);
    cbDel->setObjectName(QStringLiteral("cbDel"));
    cbDel->setText(QStringLiteral("Удаленные"));
    row->insertWidget(row->count() - 1, cbDel, 0, Qt::AlignBottom);

    m_payFilters = {{deUp, QStringLiteral("F_DATE_UP"), TFilterKind::Day},
                    {deTo, QStringLiteral("F_DATE_TO"), TFilterKind::Day},
                    {edPayNum, QStringLiteral("F_PAYNUM"), TFilterKind::Contains},
                    {lcbType, QStringLiteral("F_PTYPE"), TFilterKind::Raw},
                    {lcbPurpose, QStringLiteral("F_PURPOSE"), TFilterKind::Raw},
                    {edClientName, QStringLiteral("F_CUST"), TFilterKind::Contains},
                    {lcbNal, QStringLiteral("F_NAL"), TFilterKind::Raw},
                    {cbDel, QStringLiteral("F_DEL"), TFilterKind::Check}};
    TFrameSettings settings{nullptr, QStringLiteral("Платежи"), &dm.spPayOpen, QStringLiteral("spPay"),
                            CardOf<TPaymentCardFM>(), QStringLiteral("spPayEdit"),
                            QStringLiteral("Новая кассовая операция"),
                            QStringLiteral("Редактировать кассовую операцию"),
                            QStringLiteral("Вы уверены, что хотите удалить выбранную кассовую операцию?")};
    // The table is bound here and not through Configure: F_OBJ and F_SUMM have no control.
    settings.FillParameters = [this](TFIBDataSet *dataSet) { FillPayParameters(dataSet); };
    Configure(settings);
    gbFilter->setVisible(true);
    m_payFilters.Watch([this] { FilterChange(); });
    setWindowTitle(QStringLiteral("Журнал кассы"));

    for (TFIBDataSet *list : {&dm.spPayTypeOpen, &dm.spPurposeOpen, &dm.spNalOpen}) {
        list->Close();
        if (TFIBXSQLVAR *type = list->FindParam(QStringLiteral("IDPAYTYPE")))
            type->SetValue(QVariant());
        list->Open();
    }
}

void TPaymentFM::FillPayParameters(TFIBDataSet *dataSet)
{
    m_payFilters.Fill(dataSet);
    for (const char *name : {"F_OBJ", "F_SUMM"})
        if (TFIBXSQLVAR *param = dataSet->FindParam(QLatin1String(name)))
            param->SetValue(QVariant());
}

void TPaymentFM::FormShow(QObject *sender)
{
    ShowLastDays(deUp, deTo, [this] { FilterChange(); });
    TListFM::FormShow(sender);
    if (TGridColumn *object = frmPayments->GridView->FindColumnByFieldName(ObjectField))
        object->SetVisible(false);
}
