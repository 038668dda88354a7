#pragma once
// A money amount with a fixed number of decimal places, or empty.

#include "edit_properties.h"
#include "value_editor.h"

#include <QLineEdit>

class TCurrencyEdit : public QLineEdit, public TValueEditor
{
    Q_OBJECT
public:
    explicit TCurrencyEdit(QWidget *parent = nullptr);

    // Takes decimal places, display format and alignment of a copy of a column's settings.
    void SetProperties(const TEditProperties &properties);
    const TEditProperties &Properties() const { return m_properties; }

    // A double, or invalid for an empty editor.
    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;

protected:
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    // The text while typing (plain decimals) and while resting (the display format).
    void ShowValue(bool editing);

    TEditProperties m_properties{TEditKind::Currency};
    QVariant m_value;
};
