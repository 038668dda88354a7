#include "choice_editors.h"

#include <QRadioButton>
#include <QVBoxLayout>

TCheckBoxEdit::TCheckBoxEdit(QWidget *parent) : QCheckBox(parent)
{
    connect(this, &QCheckBox::clicked, this, [this] { UserChanged(); });
}

QVariant TCheckBoxEdit::EditValue() const
{
    return isChecked() ? m_properties.ValueChecked : m_properties.ValueUnchecked;
}

void TCheckBoxEdit::SetEditValue(const QVariant &value)
{
    setChecked(m_properties.IsChecked(value));
}

TRadioGroup::TRadioGroup(QWidget *parent) : QGroupBox(parent)
{
    new QVBoxLayout(this);
    m_group.setExclusive(true);
    connect(&m_group, &QButtonGroup::buttonClicked, this, [this] { UserChanged(); });
}

void TRadioGroup::SetItems(const QStringList &items, const QVariantList &values)
{
    for (QAbstractButton *button : m_group.buttons()) {
        m_group.removeButton(button);
        delete button;
    }
    m_items = items;
    m_values = values;
    for (int i = 0; i < items.size(); ++i) {
        auto *button = new QRadioButton(items[i], this);
        m_group.addButton(button, i);
        layout()->addWidget(button);
    }
}

int TRadioGroup::ItemIndex() const
{
    return m_group.checkedId();
}

void TRadioGroup::SetItemIndex(int index)
{
    if (QAbstractButton *button = m_group.button(index)) {
        button->setChecked(true);
        return;
    }
    // No item: every button off.
    m_group.setExclusive(false);
    for (QAbstractButton *b : m_group.buttons())
        b->setChecked(false);
    m_group.setExclusive(true);
}

QVariant TRadioGroup::EditValue() const
{
    const int index = ItemIndex();
    if (index < 0)
        return QVariant();
    return index < m_values.size() ? m_values[index] : QVariant(index);
}

void TRadioGroup::SetEditValue(const QVariant &value)
{
    int index = -1;
    if (value.isValid() && !value.isNull()) {
        if (m_values.isEmpty()) {
            bool ok = false;
            index = value.toInt(&ok);
            if (!ok)
                index = -1;
        } else {
            for (int i = 0; i < m_values.size(); ++i)
                if (m_values[i].toString() == value.toString())
                    index = i;
        }
    }
    SetItemIndex(index);
}
