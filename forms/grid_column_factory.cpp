#include "grid_column_factory.h"

#include "data_dm.h"
#include "field_name_grammar.h"
#include "grid_column.h"
#include "grid_view.h"

TGridColumn *TGridColumnFactory::Make(TDBGridView *view, const TFIBField &field)
{
    const TGridColumnSpec parsed = TFieldNameGrammar::ParseForGrid(field.FieldName(), field.DataType() == ftFloat);
    if (!parsed.HasColumn)
        return nullptr;
    TDataSource *listSource = nullptr;
    if (parsed.Kind == TEditKind::Lookup) {
        TFIBDataSet *list = DataDM ? DataDM->FindDataSet(parsed.LookupDataSetName()) : nullptr;
        listSource = DataDM ? DataDM->FindDataSource(parsed.LookupDataSourceName()) : nullptr;
        if (!list || !listSource)
            return nullptr;
        list->Open();
        if (!list->FindField(parsed.ListField))
            return nullptr;
    }
    TGridColumn *column = view->CreateColumn(field.FieldName());
    auto properties = std::make_shared<TEditProperties>();
    TFieldNameGrammar::ApplyGridSettings(*properties, parsed);
    properties->ListSource = listSource;
    properties->MaxLength = field.Size;
    column->SetProperties(properties);
    column->SetCaption(parsed.Caption);
    column->SetWidth(parsed.Width);
    column->SetVisible(parsed.Visible);
    column->SetTag(parsed.Tag);
    column->SetEditable(false);
    return column;
}
