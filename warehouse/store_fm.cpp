#include "store_fm.h"

#include "choice_editors.h"
#include "data_dm.h"
#include "date_edit.h"
#include "filter_panel.h"
#include "grid_frame.h"
#include "grid_view.h"
#include "lookup_combo_box.h"
#include "store_card_fm.h"
#include "text_editors.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

const QString TStoreFM::Caption = QStringLiteral("Журнал складских операций");

namespace {

template <class Editor>
Editor *Make(QWidget *parent, const char *name)
{
    auto *editor = new Editor(parent);
    editor->setObjectName(QLatin1String(name));
    return editor;
}

QGroupBox *Group(QWidget *parent, const char *name, const QString &title)
{
    auto *box = new QGroupBox(title, parent);
    box->setObjectName(QLatin1String(name));
    return box;
}

} // namespace

TStoreFM::TStoreFM(TMainWindowLink *mainWindow, QWidget *parent) : TfmBase(mainWindow, parent)
{
    setObjectName(QStringLiteral("StoreFM"));
    setWindowTitle(Caption);

    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(2, 2, 2, 2);
    gbFilter = Group(pnlMain, "gbFilter", TFilterPanel::DefaultTitle);
    gbFilter->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *row = new QHBoxLayout(gbFilter);
    row->setContentsMargins(6, 4, 6, 6);

    QGroupBox *gbPeriod = Group(gbFilter, "gbPeriod", QStringLiteral("За период"));
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

    QGroupBox *gbOType = Group(gbFilter, "gbOType", QStringLiteral("Вид операции"));
    lcbOTypeName = Make<TLookupComboBox>(gbOType, "lcbOTypeName");
    lcbOTypeName->setMinimumWidth(170);
    (new QHBoxLayout(gbOType))->addWidget(lcbOTypeName);
    row->addWidget(gbOType);

    QGroupBox *gbMaterial = Group(gbFilter, "gbMaterial", QStringLiteral("Материал"));
    auto *material = new QHBoxLayout(gbMaterial);
    edArticul = Make<TTextEdit>(gbMaterial, "edArticul");
    edCode = Make<TTextEdit>(gbMaterial, "edCode");
    edName = Make<TTextEdit>(gbMaterial, "edName");
    material->addLayout(CaptionOver(gbMaterial, QStringLiteral("Артикул"), edArticul, 100));
    material->addLayout(CaptionOver(gbMaterial, QStringLiteral("Код"), edCode, 100));
    material->addLayout(CaptionOver(gbMaterial, QStringLiteral("Название"), edName, 180));
    row->addWidget(gbMaterial);

    QGroupBox *gbCust = Group(gbFilter, "gbCust", QStringLiteral("Наименование клиента"));
    lcbCustName = Make<TLookupComboBox>(gbCust, "lcbCustName");
    lcbCustName->setMinimumWidth(200);
    (new QHBoxLayout(gbCust))->addWidget(lcbCustName);
    row->addWidget(gbCust);

    cbDel = Make<TCheckBoxEdit>(gbFilter, "cbDel");
    cbDel->setText(QStringLiteral("Удаленные"));
    row->addWidget(cbDel, 0, Qt::AlignBottom);
    row->addStretch(1);
    layout->addWidget(gbFilter);

    frmStore = new TGridFrame(pnlMain, QStringLiteral("frmStore"));
    layout->addWidget(frmStore, 1);

    resize(1200, 720);
    FormCreate(this);
}

TStoreFM::~TStoreFM() = default;

void TStoreFM::FormCreate(QObject *sender)
{
    TfmBase::FormCreate(sender);
    TDataDM &dm = *DataDM;
    SetFilterLookup(lcbOTypeName, &dm.dsOTypeOpen, QStringLiteral("OTYPENAME"));
    SetFilterLookup(lcbCustName, &dm.dsCustOpen, QStringLiteral("CUSTNAME"));
    // The material's texts are prefixes here, unlike the catalogue's own window.
    m_filters = {{deUp, QStringLiteral("F_DATE_UP"), TFilterKind::Day},
                 {deTo, QStringLiteral("F_DATE_TO"), TFilterKind::Day},
                 {lcbOTypeName, QStringLiteral("F_OTYPE"), TFilterKind::Raw},
                 {edArticul, QStringLiteral("F_ARTICUL"), TFilterKind::Prefix},
                 {edCode, QStringLiteral("F_CODE"), TFilterKind::Prefix},
                 {edName, QStringLiteral("F_NAME"), TFilterKind::Prefix},
                 {lcbCustName, QStringLiteral("F_IDCUST"), TFilterKind::Raw},
                 {cbDel, QStringLiteral("F_DEL"), TFilterKind::Check}};
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = frmStore;

    TFrameSettings store{frmStore, Caption, &dm.spStoreOpen, QStringLiteral("spStore"), CardOf<TStoreCardFM>(),
                         QStringLiteral("spStoreEdit"), QStringLiteral("Новая операция"),
                         QStringLiteral("Редактировать операцию"),
                         QStringLiteral("Вы уверены, что хотите удалить выбранную операцию?")};
    store.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_frames = {store};
    m_frames.Apply();
    frmStore->actAdd->OnExecute = [this](QObject *s) { actAddExecute(s); };
    frmStore->actEdit->OnExecute = [this](QObject *s) { actEditExecute(s); };
    // Too many columns to share the width: each takes what its title and first rows need, measured once
    // on the first rows shown, so that widths set by the user stay.
    TDBGridView *view = frmStore->GridView;
    view->SetColumnAutoWidth(false);
    connect(view, &TDBGridView::ColumnsChanged, this, [view] { view->resizeColumnsToContents(); });
    connect(&dm.spStoreOpen, &TFIBDataSet::Opened, this, [this, view] {
        if (m_widthsFitted || DataDM->spStoreOpen.IsEmpty())
            return;
        m_widthsFitted = true;
        QTimer::singleShot(0, view, [view] { view->resizeColumnsToContents(); });
    });
}

void TStoreFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    // Setting the period must not arm the timer: the refresh below is the only one.
    ShowLastDays(deUp, deTo, [this] { FilterChange(); });
    m_frames.Refresh();
    // The lists may have changed in other windows.
    for (TpFIBDataSet *list : {&DataDM->spOTypeOpen, &DataDM->spCustOpen}) {
        list->Close();
        list->Open();
    }
}

void TStoreFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}

void TStoreFM::actAddExecute(QObject *sender)
{
    frmStore->SelectedId = 0;
    frmStore->actAddExecute(sender);
}

void TStoreFM::actEditExecute(QObject *sender)
{
    TFIBDataSet *ds = frmStore->DS->DataSet();
    frmStore->SelectedId = ds && ds->Active() && !ds->IsEmpty() ? ds->FieldByName(QStringLiteral("ID"))->AsInteger() : 0;
    frmStore->actEditExecute(sender);
}
