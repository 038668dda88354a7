#include "date_edit.h"

#include "fib_dataset.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

// The day before any date a user means: it stands for "no date".
const QDateTime kEmpty(QDate(1752, 9, 14), QTime(0, 0));

} // namespace

TDateEdit::TDateEdit(QWidget *parent) : QDateTimeEdit(parent)
{
    setCalendarPopup(true);
    setMinimumDateTime(kEmpty);
    setSpecialValueText(QStringLiteral(" "));
    SetProperties(m_properties);
    setDateTime(kEmpty);
    connect(this, &QDateTimeEdit::dateTimeChanged, this, [this] {
        if (!m_showing)
            UserChanged();
    });
}

void TDateEdit::SetProperties(const TEditProperties &properties)
{
    m_properties = properties;
    QString picture = m_properties.EffectiveDateFormat(true);
    if (picture.isEmpty())
        picture = m_properties.DateKind == TDateKind::DateTime ? QStringLiteral("dd.mm.yyyy hh:nn")
                                                                : QStringLiteral("dd.mm.yyyy");
    m_showing = true;
    setDisplayFormat(QtDateTimePattern(picture));
    m_showing = false;
}

QVariant TDateEdit::EditValue() const
{
    if (IsEmpty())
        return QVariant();
    QDateTime value = dateTime();
    if (m_properties.DateKind == TDateKind::Date)
        value.setTime(QTime(0, 0));
    return value;
}

void TDateEdit::SetEditValue(const QVariant &value)
{
    QDateTime shown = kEmpty;
    if (value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate)
        shown = value.toDateTime();
    else if (value.isValid() && !value.isNull() && value.canConvert<double>())
        shown = SerialToDateTime(value.toDouble());
    if (!shown.isValid())
        shown = kEmpty;
    m_showing = true;
    setDateTime(shown);
    m_showing = false;
}

void TDateEdit::keyPressEvent(QKeyEvent *event)
{
    // Delete and Backspace over the whole text empty the editor.
    if ((event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        && lineEdit()->selectedText() == lineEdit()->text()) {
        SetEditValue(QVariant());
        UserChanged();
        return;
    }
    QDateTimeEdit::keyPressEvent(event);
}
