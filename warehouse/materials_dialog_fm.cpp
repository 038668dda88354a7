#include "materials_dialog_fm.h"

#include "data_dm.h"
#include "filter_panel.h"
#include "grid_frame.h"

#include <QVBoxLayout>

const QString TMaterialsDialogFM::Caption = QStringLiteral("Диалог выбора материала");

TMaterialsDialogFM::TMaterialsDialogFM(QWidget *parent)
    : TfmDialog(0, parent), gbFilter(new TFilterPanel(pnlMain)),
      frmMaterials(new TGridFrame(pnlMain, QStringLiteral("frmMaterials"))), Filters(gbFilter)
{
    setObjectName(QStringLiteral("MaterialsDialogFM"));
    setWindowTitle(Caption);
    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(gbFilter);
    layout->addWidget(frmMaterials, 1);
    resize(1100, 640);

    m_settings = MaterialsFrameSettings(&DataDM->spMatDialog);
    m_settings.Frame = frmMaterials;
    m_settings.Disabled = faEdit;
    m_settings.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_settings.Apply();
    Filters.Table.Watch([this] { FilterChange(); });
    FilterFrame = frmMaterials;
    frmMaterials->actAdd->OnExecute = [this](QObject *sender) { frmMaterialsactAddExecute(sender); };
    frmMaterials->actDblClick->OnExecute = [this](QObject *) { actOK->Execute(); };
    actOK->OnExecute = [this](QObject *sender) { actOKExecute(sender); };
}

void TMaterialsDialogFM::FormShow(QObject *sender)
{
    TfmDialog::FormShow(sender);
    frmMaterials->actRefresh->Execute();
}

void TMaterialsDialogFM::FillParameters(TFIBDataSet *dataSet)
{
    Filters.Table.Fill(dataSet);
}

void TMaterialsDialogFM::actOKExecute(QObject *)
{
    SetModalResult(mrOk);
    TFIBDataSet *ds = frmMaterials->DS->DataSet();
    ChosenId = ds && ds->Active() && ds->RecordCount() > 0 ? ds->FieldByName(QStringLiteral("ID"))->AsInteger() : 0;
}

void TMaterialsDialogFM::frmMaterialsactAddExecute(QObject *sender)
{
    frmMaterials->actAddExecute(sender);
    DataDM->spMatOpen.Close();
    DataDM->spMatOpen.Open();
}
