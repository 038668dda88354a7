#include "cust_fm.h"

#include "cust_card_fm.h"
#include "filter_panel.h"
#include "data_dm.h"
#include "grid_frame.h"
#include "ui_cust_fm.h"

const QString TCustFM::Caption = QStringLiteral("Клиенты");

TCustFM::TCustFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent), ui(std::make_unique<Ui::CustFM>())
{
    setObjectName(QStringLiteral("CustFM"));
    setWindowTitle(Caption);
    ui->setupUi(pnlMain);
    frmCust = ui->frmCust;
    edClientName = ui->edClientName;
    edPhone = ui->edPhone;
    edAddress = ui->edAddress;
    edReg = ui->edReg;
    lcbModel = ui->lcbModel;
    lcbMark = ui->lcbMark;
    resize(1100, 700);
    FormCreate(this);
}

TCustFM::~TCustFM() = default;

void TCustFM::FormCreate(QObject *sender)
{
    TfmBase::FormCreate(sender);
    TDataDM &dm = *DataDM;
    SetFilterLookup(lcbModel, &dm.dsModelOpen, QStringLiteral("MODNAME"));
    SetFilterLookup(lcbMark, &dm.dsMarkOpen, QStringLiteral("MARKNAME"));
    // The phone is bound twice and the second, raw binding wins: the user types the whole pattern.
    m_filters = {{edClientName, QStringLiteral("F_CUSTNAME"), TFilterKind::Contains},
                 {edPhone, QStringLiteral("F_PHONE"), TFilterKind::Contains},
                 {edAddress, QStringLiteral("F_ADDRESS"), TFilterKind::Contains},
                 {edReg, QStringLiteral("F_REG"), TFilterKind::Contains},
                 {edPhone, QStringLiteral("F_PHONE"), TFilterKind::Raw},
                 {lcbModel, QStringLiteral("F_MODNAME"), TFilterKind::Raw},
                 {lcbMark, QStringLiteral("F_MARK"), TFilterKind::Raw}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmCust;

    TFrameSettings cust{frmCust, QStringLiteral("Клиенты"), &dm.spCustOpen, QStringLiteral("spCust"),
                        CardOf<TCustCardFM>(), QStringLiteral("spCustEdit"), QStringLiteral("Новый клиент"),
                        QStringLiteral("Редактировать клиента"),
                        QStringLiteral("Вы уверены, что хотите удалить выбранного клиента?")};
    cust.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {cust};
    m_frames.Apply();
    frmCust->FitColumnsToContents(dm.spCustOpen);
}

void TCustFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    m_frames.Refresh();
    // The lists of the two lookups may have changed in other windows.
    for (TpFIBDataSet *list : {&DataDM->spMarkOpen, &DataDM->spModelOpen}) {
        list->Close();
        list->Open();
    }
}

void TCustFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}
