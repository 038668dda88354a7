#include "materials_fm.h"

#include "data_dm.h"

TMaterialsFM::TMaterialsFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TListFM(QStringLiteral("MaterialsFM"), QStringLiteral("frmMaterials"), mainWindow, parent),
      frmMaterials(Frame), Filters(gbFilter)
{
    Configure(MaterialsFrameSettings(&DataDM->spMatOpen), Filters.Table);
}
