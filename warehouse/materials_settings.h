#pragma once
// What the catalogue of materials and its picker share: the frame's settings and the four text filters.

#include "filter_table.h"
#include "frame_settings.h"

class TFilterPanel;
class TTextEdit;

struct TMaterialFilters
{
    // Adds the four editors to the panel.
    explicit TMaterialFilters(TFilterPanel *panel);

    TTextEdit *edMatName;
    TTextEdit *edCategory;
    TTextEdit *edArticul;
    TTextEdit *edScode;
    TFilterTable Table;
};

// Everything but the frame and its filters; `dataSet` is the catalogue's or the picker's.
TFrameSettings MaterialsFrameSettings(TFIBDataSet *dataSet);
