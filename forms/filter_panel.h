#pragma once
// The filter box of a list window: a caption over each editor, side by side, so that a window declares
// its filters in a few lines and binds them through its filter table.

#include <QGroupBox>

#include <functional>

class QVBoxLayout;
class TDataSource;
class TDateEdit;
class TLookupComboBox;
class TTextEdit;

// Makes `lookup` a filter over the rows of `list` by `listField`, holding `keyField`. Text can be typed, so
// that clearing it takes the filter off again.
void SetFilterLookup(TLookupComboBox *lookup, TDataSource *list, const QString &listField,
                     const QString &keyField = QStringLiteral("ID"));

// The last 30 days up to now, with the editors' change handlers off meanwhile, so that setting the period
// arms no refresh; `changed` is their handler after.
void ShowLastDays(TDateEdit *up, TDateEdit *to, const std::function<void()> &changed);

// A caption over `editor`, for a filter box: the label is the editor's buddy and is named after it.
QVBoxLayout *CaptionOver(QWidget *parent, const QString &caption, QWidget *editor, int minimumWidth = 170);

class TFilterPanel : public QGroupBox
{
    Q_OBJECT
public:
    explicit TFilterPanel(QWidget *parent = nullptr, const QString &title = DefaultTitle);

    TTextEdit *AddText(const QString &name, const QString &caption);
    // The rows of `list` by `listField`, holding `keyField`; typing is free, so that a cleared text means any.
    TLookupComboBox *AddLookup(const QString &name, const QString &caption, TDataSource *list,
                               const QString &keyField, const QString &listField);

    static const QString DefaultTitle;

private:
    void Place(QWidget *editor, const QString &caption);
};
