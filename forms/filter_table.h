#pragma once
// The filter panel of a window as a table: which control fills which parameter of the frame's dataset,
// and how. FillParameters of every journal and dialog walks its table, so a window declares its filters
// and holds no binding code.

#include <QList>
#include <QString>
#include <QVariant>
#include <functional>

class TFIBDataSet;
class TValueEditor;

enum class TFilterKind {
    Contains, // "%" + text + "%", also for an empty text
    Prefix,   // text + "%"
    Raw,      // the control's value as it is (lookups; a text editor's empty text is Null)
    Check,    // 1 when ticked, else 0
    Day,      // the date at the start of its day; empty is Null
};

struct TFilterBinding
{
    TValueEditor *Control = nullptr;
    QString Param;
    TFilterKind Kind = TFilterKind::Contains;

    // The value this binding gives its parameter.
    QVariant Value() const;
};

class TFilterTable : public QList<TFilterBinding>
{
public:
    using QList<TFilterBinding>::QList;
    // Binds each row in order, by name and only when the dataset has the parameter; a parameter named
    // twice takes its last value.
    void Fill(TFIBDataSet *dataSet) const;
    // Every change the user makes to a control of the table calls `changed` (the window's FilterChange).
    void Watch(const std::function<void()> &changed) const;
};
