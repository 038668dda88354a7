#include "ord_line_cards.h"

#include "data_dm.h"
#include "fm_dialog.h"
#include "grid_column.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "materials_card_fm.h"
#include "services_card_fm.h"
#include "text_editors.h"

#include <QBoxLayout>
#include <QGroupBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QVBoxLayout>

namespace {

// The filter group of a line card: a caption over each text editor, side by side.
QGroupBox *FilterGroup(QWidget *parent, const QList<std::pair<TTextEdit **, std::pair<const char *, const char *>>> &edits)
{
    auto *box = new QGroupBox(QStringLiteral("Фильтр"), parent);
    box->setObjectName(QStringLiteral("gbFilter"));
    box->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(6, 4, 6, 6);
    for (const auto &[target, names] : edits) {
        auto *edit = new TTextEdit(box);
        edit->setObjectName(QLatin1String(names.first));
        edit->setMinimumWidth(170);
        auto *column = new QVBoxLayout;
        column->setSpacing(2);
        auto *label = new QLabel(QString::fromUtf8(names.second), box);
        label->setObjectName(edit->objectName() + QStringLiteral("Lbl"));
        label->setBuddy(edit);
        column->addWidget(label);
        column->addWidget(edit);
        row->addLayout(column);
        *target = edit;
    }
    row->addStretch(1);
    return box;
}

// Where the field stands in the array of the owning grid's columns; -1 when the grid has no such column.
int PositionOf(TDBGridView *view, const QString &field)
{
    if (!view)
        return -1;
    TGridColumn *column = view->FindColumnByFieldName(field);
    return column ? view->IndexOf(column) : -1;
}

qint32 CurrentId(TGridFrame *frame)
{
    TFIBDataSet *ds = frame->DS->DataSet();
    if (!ds || !ds->Active() || ds->IsEmpty() || ds->CurrentIndex() < 0)
        return 0;
    return ds->FieldByName(QStringLiteral("ID"))->AsInteger();
}

// The focused line's values with the chosen catalogue number put in place of `field`.
void PutChosen(QVariantList &array, int position, qint32 chosen)
{
    if (chosen != 0 && position >= 0 && position < array.size())
        array[position] = chosen;
}

} // namespace

// ---------------------------------------------------------------------------------------------
// TOrdServCardFM

TOrdServCardFM::TOrdServCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                               QWidget *parent)
    : TComplexFM(QStringLiteral("OrdServCardFM"), gridView, namePrefix, procName, parent)
{
    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(4, 4, 4, 4);
    gbFilter = FilterGroup(pnlMain, {{&edName, {"edName", "Наименование"}},
                                     {&edArticul, {"edArticul", "Артикул"}},
                                     {&edCode, {"edCode", "Код"}}});
    layout->addWidget(gbFilter);
    frmServices = new TGridFrame(pnlMain, QStringLiteral("frmServices"));
    layout->addWidget(frmServices, 1);
    resize(1000, 600);
    FormCreate(this);
}

TOrdServCardFM::~TOrdServCardFM() = default;

void TOrdServCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    m_filters = {{edName, QStringLiteral("F_SERVNAME"), TFilterKind::Contains},
                 {edArticul, QStringLiteral("F_SERVART"), TFilterKind::Contains},
                 {edCode, QStringLiteral("F_SERVCODE"), TFilterKind::Contains}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmServices;
    TFrameSettings services{frmServices, QStringLiteral("Справочник услуг"), &DataDM->spServOpen,
                            QStringLiteral("spServ"), CardOf<TServicesCardFM>(), QStringLiteral("spServEdit"),
                            QStringLiteral("Новая услуга"), QStringLiteral("Редактировать услугу"),
                            QStringLiteral("Вы уверены, что хотите удалить выбранную услугу?")};
    services.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {services};
    m_frames.Apply();
}

void TOrdServCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    frmServices->actRefresh->Execute();
}

void TOrdServCardFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TOrdServCardFM::tmrFilterTimer(QObject *)
{
    frmServices->actRefresh->Execute();
    tmrFilter->stop();
}

void TOrdServCardFM::CreateDataArray()
{
    TComplexFM::CreateDataArray();
    ChosenId = CurrentId(frmServices);
    PutChosen(DataArray, PositionOf(GridView, QStringLiteral("IDSERV_LKP_SERV_F_SERVNAME")), ChosenId);
}

// ---------------------------------------------------------------------------------------------
// TOrdMatCardFM

TOrdMatCardFM::TOrdMatCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                             QWidget *parent)
    : TComplexFM(QStringLiteral("OrdMatCardFM"), gridView, namePrefix, procName, parent)
{
    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(4, 4, 4, 4);
    gbFilter = FilterGroup(pnlMain, {{&edMatName, {"edMatName", "Наименование"}},
                                     {&edArticul, {"edArticul", "Артикул"}},
                                     {&edScode, {"edScode", "Код"}}});
    layout->addWidget(gbFilter);
    frmMaterials = new TGridFrame(pnlMain, QStringLiteral("frmMaterials"));
    layout->addWidget(frmMaterials, 1);
    cxLabel1 = new QLabel(QStringLiteral("Ctrl + клик (Shift + стрелка вниз, вверх) - выбор нескольких строк"), pnlMain);
    cxLabel1->setObjectName(QStringLiteral("cxLabel1"));
    layout->addWidget(cxLabel1);

    Action1 = new TAction(ActionList, QStringLiteral("Action1"), QStringLiteral("Принять"));
    Action1->OnExecute = [this](QObject *sender) { Action1Execute(sender); };
    AdvGlowButton3 = new TModalButton(this, QStringLiteral("AdvGlowButton3"), mrOk, Action1);
    AdvGlowButton3->setParent(Panel1);
    auto *bar = static_cast<QBoxLayout *>(Panel1->layout());
    bar->insertWidget(bar->indexOf(AdvGlowButton1), AdvGlowButton3);
    resize(1000, 600);
    FormCreate(this);
}

TOrdMatCardFM::~TOrdMatCardFM() = default;

void TOrdMatCardFM::FormCreate(QObject *sender)
{
    TComplexFM::FormCreate(sender);
    m_filters = {{edMatName, QStringLiteral("F_MATNAME"), TFilterKind::Contains},
                 {edArticul, QStringLiteral("F_ARTICUL"), TFilterKind::Contains},
                 {edScode, QStringLiteral("F_SCODE"), TFilterKind::Contains}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmMaterials;
    TFrameSettings materials{frmMaterials, QStringLiteral("Справочник материалов"), &DataDM->spMatOpen,
                             QStringLiteral("spMat"), CardOf<TMaterialsCardFM>(), QStringLiteral("spMatEdit"),
                             QStringLiteral("Новый материал"), QStringLiteral("Редактировать материал"),
                             QStringLiteral("Вы уверены, что хотите удалить выбранный материал?")};
    materials.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {materials};
    m_frames.Apply();
    frmMaterials->actAdd->OnExecute = [this](QObject *s) { frmMaterialsToolButton2Click(s); };
    frmMaterials->actEdit->OnExecute = [this](QObject *s) { frmMaterialsactEditExecute(s); };
}

void TOrdMatCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    // The frame's multi-add hides the ordinary OK button before the run: that is the add mode.
    const bool adding = AdvGlowButton1->isHidden();
    AdvGlowButton3->setVisible(adding);
    frmMaterials->GridView->setSelectionMode(adding ? QAbstractItemView::ExtendedSelection
                                                    : QAbstractItemView::SingleSelection);
    cxLabel1->setVisible(frmMaterials->GridView->selectionMode() == QAbstractItemView::ExtendedSelection);
    frmMaterials->actRefresh->Execute();
}

void TOrdMatCardFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TOrdMatCardFM::tmrFilterTimer(QObject *)
{
    frmMaterials->actRefresh->Execute();
    tmrFilter->stop();
}

void TOrdMatCardFM::CreateDataArray()
{
    TComplexFM::CreateDataArray();
    ChosenId = CurrentId(frmMaterials);
    PutChosen(DataArray, PositionOf(GridView, QStringLiteral("IDMAT_LKP_MAT_F_MATNAME")), ChosenId);
}

void TOrdMatCardFM::Action1Execute(QObject *)
{
    TComplexFM::CreateDataArray();
    const int position = PositionOf(GridView, QStringLiteral("IDMAT_LKP_MAT_F_MATNAME"));
    QList<int> rows;
    for (const QModelIndex &index : frmMaterials->GridView->selectionModel()->selectedRows())
        rows << index.row();
    TFIBDataSet *catalogue = frmMaterials->DS->DataSet();
    TpFIBQuery &query = DataDM->Query;
    for (int row : rows) {
        if (!catalogue->MoveTo(row))
            continue;
        ChosenId = CurrentId(frmMaterials);
        PutChosen(DataArray, position, ChosenId);
        if (query.Transaction() && !query.Transaction()->Active())
            query.Transaction()->StartTransaction();
        // Each material gets a line of its own; the other values are those of the focused line.
        query.ExecProcedure(QStringLiteral("spOrdMatEmpty"));
        NewLineId = query.Fields(0).AsInteger();
        if (!DataArray.isEmpty())
            DataArray[0] = NewLineId;
        query.ExecProcedure(QStringLiteral("spOrdMatEdit"), DataArray);
    }
}

void TOrdMatCardFM::frmMaterialsToolButton2Click(QObject *sender)
{
    frmMaterials->actAddExecute(sender);
}

void TOrdMatCardFM::frmMaterialsactEditExecute(QObject *sender)
{
    frmMaterials->actEditExecute(sender);
}
