#include "cust_dialog_fm.h"

#include "data_dm.h"
#include "grid_frame.h"
#include "ui_cust_dialog_fm.h"

const QString TCustDialogFM::Caption = QStringLiteral("Диалог выбора клиента");

TCustDialogFM::TCustDialogFM(QWidget *parent) : TfmDialog(0, parent), ui(std::make_unique<Ui::CustDialogFM>())
{
    setObjectName(QStringLiteral("CustDialogFM"));
    setWindowTitle(Caption);
    ui->setupUi(pnlMain);
    frmCust = ui->frmCust;
    edClientName = ui->edClientName;
    edPhone = ui->edPhone;
    edAddress = ui->edAddress;
    ui->cxSplitter1->setSizes({110, 400});
    resize(760, 580);
    FormCreate(this);
}

TCustDialogFM::~TCustDialogFM() = default;

void TCustDialogFM::FormCreate(QObject *)
{
    actOK->OnExecute = [this](QObject *sender) { actOKExecute(sender); };
    actCancel->OnExecute = [this](QObject *sender) { actCancelExecute(sender); };
    m_filters = {{edClientName, QStringLiteral("F_CUSTNAME"), TFilterKind::Contains},
                 {edPhone, QStringLiteral("F_PHONE"), TFilterKind::Contains},
                 {edAddress, QStringLiteral("F_ADDRESS"), TFilterKind::Contains}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmCust;

    TFrameSettings cust;
    cust.Frame = frmCust;
    cust.Title = QStringLiteral("Клиенты");
    cust.DataSet = &DataDM->spCustDialog;
    cust.Disabled = faAdd | faEdit | faDel;
    cust.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {cust};
    m_frames.Apply();
    frmCust->actDblClick->OnExecute = [this](QObject *sender) { frmCustactDblClickExecute(sender); };
}

void TCustDialogFM::FormShow(QObject *sender)
{
    TfmDialog::FormShow(sender);
    m_frames.Refresh();
    // Set once: a filter that empties the grid later leaves OK as it is.
    TFIBDataSet *ds = frmCust->DS->DataSet();
    actOK->setEnabled(ds->Active() && !ds->IsEmpty());
}

void TCustDialogFM::actOKExecute(QObject *)
{
    SetModalResult(mrOk);
    TFIBDataSet *ds = frmCust->DS->DataSet();
    CustId = ds->Active() && !ds->IsEmpty() ? ds->FieldByName(QStringLiteral("ID"))->AsInteger() : 0;
}

void TCustDialogFM::actCancelExecute(QObject *)
{
    SetModalResult(mrCancel);
}

void TCustDialogFM::frmCustactDblClickExecute(QObject *)
{
    actOK->Execute();
}

void TCustDialogFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}
