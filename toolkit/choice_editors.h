#pragma once
// A check box and a group of radio buttons that hold field values.

#include "edit_properties.h"
#include "value_editor.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QStringList>
#include <QVariantList>

class TCheckBoxEdit : public QCheckBox, public TValueEditor
{
    Q_OBJECT
public:
    explicit TCheckBoxEdit(QWidget *parent = nullptr);

    // Takes the checked and unchecked values of a copy of a column's settings.
    void SetProperties(const TEditProperties &properties) { m_properties = properties; }
    const TEditProperties &Properties() const { return m_properties; }

    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;

private:
    TEditProperties m_properties{TEditKind::CheckBox};
};

class TRadioGroup : public QGroupBox, public TValueEditor
{
    Q_OBJECT
public:
    explicit TRadioGroup(QWidget *parent = nullptr);

    // One button per item; Values, when given, are what the items stand for, else their positions.
    void SetItems(const QStringList &items, const QVariantList &values = QVariantList());
    QStringList Items() const { return m_items; }
    int ItemIndex() const;
    void SetItemIndex(int index);

    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;

private:
    QStringList m_items;
    QVariantList m_values;
    QButtonGroup m_group;
};
