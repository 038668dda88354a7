#pragma once
// The catalogue of goods, found by name, category, article and code anywhere in the text.

#include "list_fm.h"
#include "materials_settings.h"

class TMaterialsFM : public TListFM
{
    Q_OBJECT
public:
    explicit TMaterialsFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    TGridFrame *frmMaterials;
    TMaterialFilters Filters;
};
