#include "value_display.h"

#include "lookup_list.h"

QString TValueDisplay::Text(const TEditProperties &p, const TFIBField *field, const QVariant &value)
{
    switch (p.Kind) {
    case TEditKind::Lookup: {
        TLookupList *list = TLookupList::For(p.ListDataSet(), p.KeyField(), p.ListField());
        return list ? list->TextOf(value) : QString();
    }
    case TEditKind::Date:
        if (value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate)
            return FormatFieldValue(value.toDateTime(), p.EffectiveDateFormat());
        // A float column under a date editor holds the day serial.
        if (value.isValid() && !value.isNull()) {
            bool ok = false;
            const double serial = value.toDouble(&ok);
            if (ok)
                return FormatFieldValue(SerialToDateTime(serial), p.EffectiveDateFormat());
        }
        return FormatFieldValue(value, QString());
    case TEditKind::CheckBox:
        if ((!value.isValid() || value.isNull()) && p.NullStyle != 0)
            return p.DisplayGrayed;
        return p.IsChecked(value) ? p.DisplayChecked : p.DisplayUnchecked;
    case TEditKind::Currency: {
        if (!value.isValid() || value.isNull())
            return QString();
        const QString format = p.DisplayFormat.isEmpty()
                                   ? QStringLiteral("0.") + QString(p.DecimalPlaces, QLatin1Char('0'))
                                   : p.DisplayFormat;
        return FormatFieldValue(value, format);
    }
    case TEditKind::Plain:
    case TEditKind::Button:
        break;
    }
    return FormatFieldValue(value, field ? field->DisplayFormat : QString());
}

bool TValueDisplay::AlignsRight(const TEditProperties &p, const TFIBField *field)
{
    if (p.Kind == TEditKind::Currency)
        return p.HorizontalAlignment.testFlag(Qt::AlignRight);
    if (p.Kind == TEditKind::Plain || p.Kind == TEditKind::Button)
        return field && field->IsNumeric();
    return false;
}
