#include "lookup_combo_box.h"

#include "app_exception.h"
#include "lookup_list.h"
#include "text_editors.h"

#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>

TLookupComboBox::TLookupComboBox(QWidget *parent) : QComboBox(parent)
{
    setInsertPolicy(QComboBox::NoInsert);
    connect(this, &QComboBox::activated, this, &TLookupComboBox::Picked);
}

void TLookupComboBox::SetProperties(const TEditProperties &properties)
{
    m_properties = properties;
    setEditable(m_properties.DropDownStyle == 1);
    if (QLineEdit *line = lineEdit()) {
        connect(line, &QLineEdit::editingFinished, this, &TLookupComboBox::TypingFinished, Qt::UniqueConnection);
        // A typed text may become a new row of the list: only what Windows-1251 holds.
        if (!line->validator())
            line->setValidator(new TAnsiTextValidator(line));
    }
    if (m_list)
        disconnect(m_list, nullptr, this, nullptr);
    m_list = TLookupList::For(m_properties.ListDataSet(), m_properties.KeyField(), m_properties.ListField());
    if (m_list)
        connect(m_list, &TLookupList::Changed, this, &TLookupComboBox::ReloadList);
    ReloadList();
}

QSize TLookupComboBox::sizeHint() const
{
    QSize size = QComboBox::sizeHint();
    size.setWidth(qMin(size.width(), MaxHintWidth));
    return size;
}

QSize TLookupComboBox::minimumSizeHint() const
{
    QSize size = QComboBox::minimumSizeHint();
    size.setWidth(qMin(size.width(), MaxHintWidth));
    return size;
}

void TLookupComboBox::initStyleOption(QStyleOptionComboBox *option) const
{
    QComboBox::initStyleOption(option);
    if (isEditable())
        return;
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this);
    option->currentText = fontMetrics().elidedText(option->currentText, Qt::ElideRight, field.width() - 2);
}

void TLookupComboBox::ReloadList()
{
    m_showing = true;
    clear();
    if (m_list) {
        try {
            for (const auto &item : m_list->Items())
                addItem(item.second, item.first);
        } catch (...) {
            HandleCurrentException();
        }
    }
    setCurrentIndex(IndexOfKey(m_value));
    if (currentIndex() < 0 && isEditable())
        setEditText(QString());
    m_showing = false;
}

int TLookupComboBox::IndexOfKey(const QVariant &key) const
{
    if (!key.isValid() || key.isNull())
        return -1;
    for (int i = 0; i < count(); ++i) {
        const QVariant k = itemData(i);
        bool a = false, b = false;
        const double x = k.toDouble(&a), y = key.toDouble(&b);
        if (a && b ? x == y : k.toString() == key.toString())
            return i;
    }
    return -1;
}

QVariant TLookupComboBox::EditValue() const
{
    return m_value;
}

void TLookupComboBox::SetEditValue(const QVariant &value)
{
    m_value = value.isNull() ? QVariant() : value;
    m_showing = true;
    setCurrentIndex(IndexOfKey(m_value));
    if (currentIndex() < 0 && isEditable())
        setEditText(QString());
    m_showing = false;
}

void TLookupComboBox::Picked(int index)
{
    if (m_showing)
        return;
    m_value = index >= 0 ? itemData(index) : QVariant();
    UserChanged();
}

void TLookupComboBox::TypingFinished()
{
    if (m_showing || !isEditable())
        return;
    const QString text = currentText();
    if (text.isEmpty()) {
        if (m_value.isValid()) {
            m_value = QVariant();
            UserChanged();
        }
        return;
    }
    int index = findText(text, Qt::MatchExactly);
    if (index < 0) {
        try {
            if (OnNewLookupDisplayText)
                OnNewLookupDisplayText(text);
            emit NewDisplayText(text);
        } catch (...) {
            HandleCurrentException();
        }
        ReloadList();
        index = findText(text, Qt::MatchExactly);
    }
    if (index < 0)
        return;
    const QVariant key = itemData(index);
    m_showing = true;
    setCurrentIndex(index);
    m_showing = false;
    if (key != m_value) {
        m_value = key;
        UserChanged();
    }
}
