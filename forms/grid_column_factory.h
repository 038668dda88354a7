#pragma once
// Makes the grid column of a dataset field by the field-name grammar, finding a lookup's list in the
// data module.

class QString;
class TDBGridView;
class TFIBField;
class TGridColumn;

class TGridColumnFactory
{
public:
    // The new column, or null when the grammar gives the field none (a lookup whose stem, dataset,
    // data source or list field is missing). Opens the list dataset of a lookup; its errors pass on.
    static TGridColumn *Make(TDBGridView *view, const TFIBField &field);
};
