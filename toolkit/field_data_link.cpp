#include "field_data_link.h"

#include "app_exception.h"
#include "text_editors.h"

#include <QWidget>

TFieldDataLink::TFieldDataLink(QWidget *editor, TValueEditor *valueEditor) : QObject(editor), m_editor(valueEditor)
{
    m_editor->OnUserChange = [this] { EditorChanged(); };
}

void TFieldDataLink::SetDataSource(TDataSource *source)
{
    if (m_sourceConnection)
        disconnect(m_sourceConnection);
    m_source = source;
    if (source)
        m_sourceConnection = connect(source, &TDataSource::DataSetChanged, this, &TFieldDataLink::Rebind);
    Rebind();
}

void TFieldDataLink::SetDataField(const QString &fieldName)
{
    m_fieldName = fieldName;
    Reload();
}

TFIBField *TFieldDataLink::Field() const
{
    TFIBDataSet *dataSet = DataSet();
    if (!dataSet || !dataSet->Active() || m_fieldName.isEmpty())
        return nullptr;
    return dataSet->FindField(m_fieldName);
}

void TFieldDataLink::Rebind()
{
    for (const auto &c : std::as_const(m_connections))
        disconnect(c);
    m_connections.clear();
    m_dataSet = DataSet();
    if (TFIBDataSet *ds = m_dataSet) {
        const auto reload = [this] { Reload(); };
        m_connections << connect(ds, &TFIBDataSet::Opened, this, reload)
                      << connect(ds, &TFIBDataSet::Closed, this, reload)
                      << connect(ds, &TFIBDataSet::Scrolled, this, reload)
                      << connect(ds, &TFIBDataSet::RowChanged, this, reload)
                      << connect(ds, &TFIBDataSet::StateChanged, this, reload)
                      << connect(ds, &TFIBDataSet::FieldChanged, this, [this](int field) {
                             TFIBField *f = Field();
                             if (!m_writing && f && f->Index() == field)
                                 Reload();
                         });
    }
    Reload();
}

void TFieldDataLink::Reload()
{
    if (m_writing)
        return;
    m_showing = true;
    TFIBField *field = Field();
    LimitToField(field);
    m_editor->SetEditValue(field ? field->Value() : QVariant());
    m_showing = false;
}

void TFieldDataLink::EditorChanged()
{
    if (m_showing)
        return;
    TFIBDataSet *dataSet = DataSet();
    TFIBField *field = Field();
    if (!dataSet || !field)
        return;
    // Taken before the dataset changes state: that change would show the stored value again.
    const QVariant value = m_editor->EditValue();
    m_writing = true;
    try {
        if (dataSet->State() == dsBrowse)
            dataSet->Edit();
        field->SetValue(value);
        m_writing = false;
    } catch (...) {
        m_writing = false;
        HandleCurrentException();
        Reload();
    }
}

void TFieldDataLink::PostEditValue()
{
    TFIBField *field = Field();
    if (!field)
        return;
    const auto blank = [](const QVariant &v) {
        return !v.isValid() || v.isNull() || (v.typeId() == QMetaType::QString && v.toString().isEmpty());
    };
    const QVariant value = m_editor->EditValue();
    const QVariant stored = field->Value();
    if (blank(value) ? blank(stored) : (!blank(stored) && value == stored))
        return;
    EditorChanged();
}

void TFieldDataLink::LimitToField(const TFIBField *field)
{
    // One byte per character in Windows-1251: the column's length in bytes is its length in characters.
    const int length = field && field->Size > 0 ? field->Size : 0;
    if (auto *line = qobject_cast<TTextEdit *>(parent()))
        line->setMaxLength(length > 0 ? length : 32767);
    else if (auto *memo = qobject_cast<TMemo *>(parent()))
        memo->SetMaxLength(length);
}
