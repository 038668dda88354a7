#pragma once
// One column of a data grid: the field it is bound to, how it looks, and its shared edit settings.

#include "edit_properties.h"

#include <QObject>
#include <QString>

class TDBGridView;

class TGridColumn : public QObject
{
    Q_OBJECT
public:
    TGridColumn(TDBGridView *view, const QString &fieldName);

    TDBGridView *GridView() const { return m_view; }
    // Position among the view's columns.
    int Index() const;

    QString FieldName() const { return m_fieldName; }
    void SetFieldName(const QString &name);
    QString Caption() const { return m_caption; }
    void SetCaption(const QString &caption);
    int Width() const { return m_width; }
    void SetWidth(int width);
    bool Visible() const { return m_visible; }
    void SetVisible(bool visible);
    // Free for windows and cards; 1 marks a column whose card editor is a chooser button.
    int Tag() const { return m_tag; }
    void SetTag(int tag) { m_tag = tag; }
    // In-place editing of this column, when the view allows editing at all.
    bool Editable() const { return m_editable; }
    void SetEditable(bool editable);

    // The settings object itself: what is written into it shows in the grid at once after
    // PropertiesChanged. Editors elsewhere get Properties()->Clone().
    const TEditPropertiesPtr &Properties() const { return m_properties; }
    void SetProperties(const TEditPropertiesPtr &properties);
    void PropertiesChanged() { emit Changed(); }

signals:
    void Changed();

private:
    TDBGridView *m_view;
    QString m_fieldName;
    QString m_caption;
    int m_width = 64;
    bool m_visible = true;
    int m_tag = 0;
    bool m_editable = false;
    TEditPropertiesPtr m_properties;
};
