#pragma once
// The modal picker of a material for store documents and orders: the catalogue with its filters, a
// new material can be added on the spot; OK or a double click takes the material under the cursor.

#include "filter_table.h"
#include "fm_dialog.h"
#include "frame_settings.h"
#include "materials_settings.h"

class TFilterPanel;
class TGridFrame;

class TMaterialsDialogFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TMaterialsDialogFM(QWidget *parent = nullptr);

    TFilterPanel *gbFilter;
    TGridFrame *frmMaterials;
    TMaterialFilters Filters;
    // The material taken at OK; 0 before, or with no row under the cursor.
    qint32 ChosenId = 0;

    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);
    void actOKExecute(QObject *sender);
    // The frame's add; the catalogue window behind shows the new material too.
    void frmMaterialsactAddExecute(QObject *sender);

    static const QString Caption;

private:
    TFrameSettings m_settings;
};
