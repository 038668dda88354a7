#include "auto_fm.h"

#include "app_exception.h"
#include "choice_editors.h"
#include "filter_panel.h"
#include "data_dm.h"
#include "dict_fm.h"
#include "fib_xsqlvar.h"
#include "filter_order.h"
#include "grid_frame.h"
#include "lookup_combo_box.h"
#include "text_editors.h"
#include "ui_auto_fm.h"

#include <QDateTime>
#include <QMenu>
#include <QResizeEvent>

const QString TAutoFM::Caption = QStringLiteral("Справочник автомобилей");

TAutoFM::TAutoFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent), ui(std::make_unique<Ui::AutoFM>())
{
    setObjectName(QStringLiteral("AutoFM"));
    setWindowTitle(Caption);
    ui->setupUi(pnlMain);
    frmAuto = ui->frmAuto;
    frmMark = ui->frmMark;
    frmModel = ui->frmModel;
    frmAType = ui->frmAType;
    frmAYear = ui->frmAYear;
    lcbType = ui->lcbType;
    lcbModel = ui->lcbModel;
    lcbMark = ui->lcbMark;
    lcbYear = ui->lcbYear;
    edReg = ui->edReg;
    edVIN = ui->edVIN;
    edDrive = ui->edDrive;
    edColName = ui->edColName;
    cbDel = ui->cbDel;
    ui->pnlReferences->installEventFilter(this);
    resize(1100, 760);
    FormCreate(this);
}

TAutoFM::~TAutoFM() = default;

void TAutoFM::FormCreate(QObject *sender)
{
    TfmBase::FormCreate(sender);
    TDataDM &dm = *DataDM;
    SetFilterLookup(lcbType, &dm.dsATypeOpen, QStringLiteral("ATYPENAME"));
    SetFilterLookup(lcbModel, &dm.dsModelOpen, QStringLiteral("MODNAME"));
    SetFilterLookup(lcbMark, &dm.dsMarkOpen, QStringLiteral("MARKNAME"));
    SetFilterLookup(lcbYear, &dm.dsAYearOpen, QStringLiteral("AYEARNAME"));
    // Empty texts still go as "%%": spAutoOpen compares a null VIN, drive or colour filter with REG.
    m_filters = {{lcbType, QStringLiteral("F_TYPE"), TFilterKind::Raw},
                 {lcbModel, QStringLiteral("F_MODNAME"), TFilterKind::Raw},
                 {lcbMark, QStringLiteral("F_MARK"), TFilterKind::Raw},
                 {lcbYear, QStringLiteral("F_YEAR"), TFilterKind::Raw},
                 {edReg, QStringLiteral("F_REG"), TFilterKind::Contains},
                 {edVIN, QStringLiteral("F_VIN"), TFilterKind::Contains},
                 {edDrive, QStringLiteral("F_DRIVE"), TFilterKind::Contains},
                 {edColName, QStringLiteral("F_COLNAME"), TFilterKind::Contains},
                 {cbDel, QStringLiteral("F_DEL"), TFilterKind::Check}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmAuto;

    // Frame, title, dataset, stem, card, save procedure, captions of add and edit, delete question.
    m_frames = {
        {frmMark, QStringLiteral("Марка авто"), &dm.spMarkOpen, QStringLiteral("spMark"), CardOf<TDictFM>(),
         QStringLiteral("spMarkEdit"), QStringLiteral("Новая марка"), QStringLiteral("Редактировать марку"),
         QStringLiteral("Вы уверены, что хотите удалить выбранную марку?")},
        {frmModel, QStringLiteral("Модель авто"), &dm.spModelOpen, QStringLiteral("spMod"), CardOf<TDictFM>(),
         QStringLiteral("spModEdit"), QStringLiteral("Новая модель"), QStringLiteral("Редактировать модель"),
         QStringLiteral("Вы уверены, что хотите удалить выбранную модель?")},
        {frmAType, QStringLiteral("Тип авто"), &dm.spATypeOpen, QStringLiteral("spAType"), CardOf<TDictFM>(),
         QStringLiteral("spATypeEdit"), QStringLiteral("Новый тип авто"), QStringLiteral("Редактировать тип авто"),
         QStringLiteral("Вы уверены, что хотите удалить выбранный тип авто?")},
        {frmAYear, QStringLiteral("Год выпуска"), &dm.spAYearOpen, QStringLiteral("spYear"), CardOf<TDictFM>(),
         QStringLiteral("spYearEdit"), QStringLiteral("Новый год выпуска"), QStringLiteral("Редактировать год выпуска"),
         QStringLiteral("Вы уверены, что хотите удалить выбранный год выпуска?")},
        {frmAuto, QStringLiteral("Справочник автомобилей"), &dm.spAutoOpen, QStringLiteral("spAuto"), CardOf<TDictFM>(),
         QStringLiteral("spAutoEdit"), QStringLiteral("Новый автомобиль"), QStringLiteral("Редактировать автомобиль"),
         QStringLiteral("Вы уверены, что хотите удалить выбранный автомобиль?")},
    };
    m_frames.last().FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames.Apply();

    miShowOrders = frmAuto->pmMain->addAction(QStringLiteral("Показать заказы по данному автомобилю"));
    miShowOrders->setObjectName(QStringLiteral("miShowOrders"));
    connect(miShowOrders, &QAction::triggered, this, [this] {
        try {
            miShowOrdersClick(miShowOrders);
        } catch (...) {
            HandleCurrentException();
        }
    });
}

void TAutoFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    m_frames.Refresh();
    FormResize(this);
}

void TAutoFM::FormResize(QObject *)
{
    // Three lists take a quarter of the window's width each, the years what is left.
    QWidget *panel = ui->pnlReferences;
    const int quarter = width() / 4;
    const int height = panel->height();
    int left = 0;
    for (TGridFrame *frame : {frmMark, frmModel, frmAType}) {
        frame->setGeometry(left, 0, quarter, height);
        left += quarter;
    }
    frmAYear->setGeometry(left, 0, qMax(0, panel->width() - left), height);
}

void TAutoFM::resizeEvent(QResizeEvent *event)
{
    TfmBase::resizeEvent(event);
    FormResize(this);
}

bool TAutoFM::eventFilter(QObject *watched, QEvent *event)
{
    // The panel of the lists gets its size after the window: lay them out again then.
    if (watched == ui->pnlReferences && event->type() == QEvent::Resize)
        FormResize(this);
    return TfmBase::eventFilter(watched, event);
}

void TAutoFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TAutoFM::miShowOrdersClick(QObject *)
{
    TFilterOrder filter;
    filter.DateTo = DateTimeToSerial(QDateTime::currentDateTime());
    TFIBDataSet *ds = frmAuto->DS->DataSet();
    if (ds->Active() && !ds->IsEmpty())
        filter.Reg = ds->FieldByName(QStringLiteral("REG"))->AsString();
    // The send waits for the handler, so the record may live here.
    if (TMainWindowLink *main = MainWindow())
        main->SendMessage(WMShowOrderAuto, reinterpret_cast<qintptr>(&filter), 0);
}
