#pragma once
// How a column shows and edits its values: the kind of editor and that kind's settings. A grid column
// holds one shared object; an editor placed elsewhere gets a copy.

#include "fib_datasource.h"

#include <QPointer>
#include <QString>
#include <QVariant>
#include <memory>

enum class TEditKind { Plain, Lookup, Button, Date, CheckBox, Currency };

enum class TDateKind { Date, DateTime };

class TEditProperties
{
public:
    explicit TEditProperties(TEditKind kind = TEditKind::Plain) : Kind(kind) {}

    TEditKind Kind;

    // Lookup: the list's rows come from ListSource; the value is KeyFieldNames, the text ListFieldNames
    // (the first of a ";" list).
    QPointer<TDataSource> ListSource;
    QString ListFieldNames;
    QString KeyFieldNames;
    bool ListHeaderVisible = true;
    // 0: the list only; 1: the list with free typing.
    int DropDownStyle = 0;

    // Date: pictures whose fields are the letters d, m, y, h, n and s; empty means the locale's.
    TDateKind DateKind = TDateKind::Date;
    bool ShowTime = false;
    QString DisplayFormat; // currency as well
    QString EditFormat;

    // Check box.
    int NullStyle = 0; // 0: a null shows unchecked
    QVariant ValueChecked = 1;
    QVariant ValueUnchecked = 0;
    QVariant ValueGrayed = 0;
    QString DisplayChecked = QStringLiteral("true");
    QString DisplayUnchecked = QStringLiteral("false");
    QString DisplayGrayed = QStringLiteral("false");
    QString ValueType;

    // Text: characters at most, the length of the column; 0 for no limit.
    int MaxLength = 0;

    // Currency.
    int DecimalPlaces = 2;
    Qt::Alignment HorizontalAlignment = Qt::AlignRight;

    TFIBDataSet *ListDataSet() const { return ListSource ? ListSource->DataSet() : nullptr; }
    QString ListField() const { return ListFieldNames.section(QLatin1Char(';'), 0, 0).trimmed(); }
    QString KeyField() const { return KeyFieldNames.section(QLatin1Char(';'), 0, 0).trimmed(); }
    // Whether a value counts as checked under these settings.
    bool IsChecked(const QVariant &value) const;
    // The date picture that a value shows under: a date-only kind drops the time part.
    QString EffectiveDateFormat(bool editing = false) const;

    std::shared_ptr<TEditProperties> Clone() const { return std::make_shared<TEditProperties>(*this); }
};

using TEditPropertiesPtr = std::shared_ptr<TEditProperties>;
