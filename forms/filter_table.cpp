#include "filter_table.h"

#include "common.h"
#include "fib_dataset.h"
#include "value_editor.h"

#include <QDateTime>

QVariant TFilterBinding::Value() const
{
    const QVariant value = Control->EditValue();
    const QString text = value.isNull() ? QString() : value.toString();
    switch (Kind) {
    case TFilterKind::Contains:
        return QString(QLatin1Char('%') + text + QLatin1Char('%'));
    case TFilterKind::Prefix:
        return QString(text + QLatin1Char('%'));
    case TFilterKind::Raw:
        return value.typeId() == QMetaType::QString ? StrOrNull(text) : value;
    case TFilterKind::Check:
        return value.toInt() != 0 ? 1 : 0;
    case TFilterKind::Day: {
        const QDateTime moment = value.toDateTime();
        if (!moment.isValid())
            return QVariant();
        return QDateTime(moment.date(), QTime(0, 0));
    }
    }
    return QVariant();
}

void TFilterTable::Fill(TFIBDataSet *dataSet) const
{
    for (const TFilterBinding &binding : *this)
        if (TFIBXSQLVAR *param = dataSet->FindParam(binding.Param))
            param->SetValue(binding.Value());
}

void TFilterTable::Watch(const std::function<void()> &changed) const
{
    for (const TFilterBinding &binding : *this)
        binding.Control->OnUserChange = changed;
}
