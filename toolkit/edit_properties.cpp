#include "edit_properties.h"

bool TEditProperties::IsChecked(const QVariant &value) const
{
    if (!value.isValid() || value.isNull())
        return false;
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    bool okValue = false, okChecked = false;
    const double number = value.toDouble(&okValue);
    const double checked = ValueChecked.toDouble(&okChecked);
    if (okValue && okChecked)
        return number == checked;
    return value.toString() == ValueChecked.toString();
}

QString TEditProperties::EffectiveDateFormat(bool editing) const
{
    QString format = editing && !EditFormat.isEmpty() ? EditFormat : DisplayFormat;
    if (DateKind == TDateKind::DateTime || format.isEmpty())
        return format;
    // The time part starts at the first hour letter.
    const qsizetype hour = format.indexOf(QLatin1Char('h'), 0, Qt::CaseInsensitive);
    return hour < 0 ? format : format.left(hour).trimmed();
}
