#include "currency_edit.h"

#include "fib_dataset.h"

#include <QDoubleValidator>
#include <QLocale>

TCurrencyEdit::TCurrencyEdit(QWidget *parent) : QLineEdit(parent)
{
    SetProperties(m_properties);
    connect(this, &QLineEdit::textEdited, this, [this](const QString &text) {
        const QString t = text.trimmed();
        if (t.isEmpty()) {
            m_value = QVariant();
        } else {
            bool ok = false;
            double number = QLocale().toDouble(t, &ok);
            if (!ok)
                number = t.toDouble(&ok);
            if (!ok)
                return;
            m_value = number;
        }
        UserChanged();
    });
}

void TCurrencyEdit::SetProperties(const TEditProperties &properties)
{
    m_properties = properties;
    auto *validator = new QDoubleValidator(this);
    validator->setDecimals(m_properties.DecimalPlaces);
    validator->setNotation(QDoubleValidator::StandardNotation);
    setValidator(validator);
    setAlignment(m_properties.HorizontalAlignment | Qt::AlignVCenter);
    ShowValue(hasFocus());
}

QVariant TCurrencyEdit::EditValue() const
{
    return m_value;
}

void TCurrencyEdit::SetEditValue(const QVariant &value)
{
    if (!value.isValid() || value.isNull()) {
        m_value = QVariant();
    } else {
        bool ok = false;
        const double number = value.toDouble(&ok);
        m_value = ok ? QVariant(number) : QVariant();
    }
    ShowValue(hasFocus());
}

void TCurrencyEdit::ShowValue(bool editing)
{
    if (!m_value.isValid()) {
        setText(QString());
        return;
    }
    if (editing || m_properties.DisplayFormat.isEmpty()) {
        QLocale locale;
        locale.setNumberOptions(QLocale::OmitGroupSeparator);
        setText(locale.toString(m_value.toDouble(), 'f', m_properties.DecimalPlaces));
    } else {
        setText(FormatFieldValue(m_value, m_properties.DisplayFormat));
    }
}

void TCurrencyEdit::focusInEvent(QFocusEvent *event)
{
    ShowValue(true);
    QLineEdit::focusInEvent(event);
}

void TCurrencyEdit::focusOutEvent(QFocusEvent *event)
{
    ShowValue(false);
    QLineEdit::focusOutEvent(event);
}
