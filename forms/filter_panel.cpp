#include "filter_panel.h"

#include "date_edit.h"
#include "edit_properties.h"
#include "lookup_combo_box.h"
#include "text_editors.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

void ShowLastDays(TDateEdit *up, TDateEdit *to, const std::function<void()> &changed)
{
    up->OnUserChange = nullptr;
    to->OnUserChange = nullptr;
    const QDateTime now = QDateTime::currentDateTime();
    up->SetEditValue(now.addDays(-30));
    to->SetEditValue(now);
    up->OnUserChange = changed;
    to->OnUserChange = changed;
}

void SetFilterLookup(TLookupComboBox *lookup, TDataSource *list, const QString &listField, const QString &keyField)
{
    TEditProperties properties(TEditKind::Lookup);
    properties.ListSource = list;
    properties.KeyFieldNames = keyField;
    properties.ListFieldNames = listField;
    properties.DropDownStyle = 1;
    lookup->SetProperties(properties);
}

const QString TFilterPanel::DefaultTitle = QStringLiteral("Параметры выбора");

TFilterPanel::TFilterPanel(QWidget *parent, const QString &title) : QGroupBox(title, parent)
{
    setObjectName(QStringLiteral("gbFilter"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 6);
    layout->addStretch(1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QVBoxLayout *CaptionOver(QWidget *parent, const QString &caption, QWidget *editor, int minimumWidth)
{
    auto *column = new QVBoxLayout;
    column->setSpacing(2);
    auto *label = new QLabel(caption, parent);
    label->setObjectName(editor->objectName() + QStringLiteral("Lbl"));
    label->setBuddy(editor);
    column->addWidget(label);
    column->addWidget(editor);
    editor->setMinimumWidth(minimumWidth);
    return column;
}

void TFilterPanel::Place(QWidget *editor, const QString &caption)
{
    auto *row = static_cast<QHBoxLayout *>(layout());
    row->insertLayout(row->count() - 1, CaptionOver(this, caption, editor));
}

TTextEdit *TFilterPanel::AddText(const QString &name, const QString &caption)
{
    auto *edit = new TTextEdit(this);
    edit->setObjectName(name);
    Place(edit, caption);
    return edit;
}

TLookupComboBox *TFilterPanel::AddLookup(const QString &name, const QString &caption, TDataSource *list,
                                         const QString &keyField, const QString &listField)
{
    auto *combo = new TLookupComboBox(this);
    combo->setObjectName(name);
    SetFilterLookup(combo, list, listField, keyField);
    Place(combo, caption);
    return combo;
}
