#pragma once
// Binds an editor to one field of the current row of a data source's dataset: the editor shows the
// field, and what the user types goes into the row, putting the dataset into edit state.

#include "fib_datasource.h"
#include "value_editor.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>

class QWidget;

class TFieldDataLink : public QObject
{
    Q_OBJECT
public:
    TFieldDataLink(QWidget *editor, TValueEditor *valueEditor);

    TDataSource *DataSource() const { return m_source; }
    void SetDataSource(TDataSource *source);
    QString DataField() const { return m_fieldName; }
    void SetDataField(const QString &fieldName);

    TFIBDataSet *DataSet() const { return m_source ? m_source->DataSet() : nullptr; }
    // The bound field, or null while the dataset is closed or lacks it.
    TFIBField *Field() const;

    // Shows the field's present value.
    void Reload();
    // Writes the editor's present value into the field, as a change by the user would, when it differs
    // from the field's: an editor merely left puts no row into edit state.
    void PostEditValue();

private:
    // A text editor takes no more characters than the field's column holds.
    void LimitToField(const TFIBField *field);
    void Rebind();
    void EditorChanged();

    TValueEditor *m_editor;
    QPointer<TDataSource> m_source;
    QPointer<TFIBDataSet> m_dataSet;
    QString m_fieldName;
    QList<QMetaObject::Connection> m_connections;
    QMetaObject::Connection m_sourceConnection;
    bool m_showing = false;
    bool m_writing = false;
};

// An editor of the toolkit made data-bound.
template <class Editor>
class TDBEdit : public Editor
{
public:
    explicit TDBEdit(QWidget *parent = nullptr) : Editor(parent), m_link(this, this) {}

    TFieldDataLink &DataBinding() { return m_link; }
    void SetDataBinding(TDataSource *source, const QString &fieldName)
    {
        m_link.SetDataField(fieldName);
        m_link.SetDataSource(source);
    }

private:
    TFieldDataLink m_link;
};
