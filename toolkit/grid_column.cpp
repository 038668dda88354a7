#include "grid_column.h"

#include "grid_view.h"

TGridColumn::TGridColumn(TDBGridView *view, const QString &fieldName)
    : QObject(view), m_view(view), m_fieldName(fieldName), m_caption(fieldName),
      m_properties(std::make_shared<TEditProperties>())
{
}

int TGridColumn::Index() const
{
    return m_view ? m_view->IndexOf(this) : -1;
}

void TGridColumn::SetFieldName(const QString &name)
{
    m_fieldName = name;
    emit Changed();
}

void TGridColumn::SetCaption(const QString &caption)
{
    if (caption == m_caption)
        return;
    m_caption = caption;
    emit Changed();
}

void TGridColumn::SetWidth(int width)
{
    if (width == m_width)
        return;
    m_width = width;
    emit Changed();
}

void TGridColumn::SetVisible(bool visible)
{
    if (visible == m_visible)
        return;
    m_visible = visible;
    emit Changed();
}

void TGridColumn::SetEditable(bool editable)
{
    if (editable == m_editable)
        return;
    m_editable = editable;
    emit Changed();
}

void TGridColumn::SetProperties(const TEditPropertiesPtr &properties)
{
    m_properties = properties ? properties : std::make_shared<TEditProperties>();
    emit Changed();
}
