#pragma once
// A date, or a date with time, that may also be empty.

#include "edit_properties.h"
#include "value_editor.h"

#include <QDateTimeEdit>

class TDateEdit : public QDateTimeEdit, public TValueEditor
{
    Q_OBJECT
public:
    explicit TDateEdit(QWidget *parent = nullptr);

    // Takes the kind and the pictures of a copy of a column's settings.
    void SetProperties(const TEditProperties &properties);
    const TEditProperties &Properties() const { return m_properties; }

    // A QDateTime, or invalid for an empty editor.
    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;
    bool IsEmpty() const { return dateTime() == minimumDateTime(); }
    void Clear() { SetEditValue(QVariant()); }

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    TEditProperties m_properties{TEditKind::Date};
    bool m_showing = false;
};
