#include "grid_delegate.h"

#include "currency_edit.h"
#include "date_edit.h"
#include "grid_column.h"
#include "grid_view.h"
#include "lookup_combo_box.h"
#include "text_editors.h"

TGridDelegate::TGridDelegate(TDBGridView *view) : QStyledItemDelegate(view), m_view(view)
{
}

QWidget *TGridDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    TGridColumn *column = m_view->Columns(index.column());
    if (!column)
        return nullptr;
    const TEditProperties &p = *column->Properties();
    auto *self = const_cast<TGridDelegate *>(this);
    switch (p.Kind) {
    case TEditKind::Lookup: {
        auto *editor = new TLookupComboBox(parent);
        editor->SetProperties(p);
        // A choice from the list is a finished edit.
        editor->OnUserChange = [self, editor] { emit self->commitData(editor); };
        return editor;
    }
    case TEditKind::Date: {
        auto *editor = new TDateEdit(parent);
        editor->SetProperties(p);
        return editor;
    }
    case TEditKind::Currency: {
        auto *editor = new TCurrencyEdit(parent);
        editor->SetProperties(p);
        return editor;
    }
    case TEditKind::CheckBox:
        return nullptr;
    case TEditKind::Button:
    case TEditKind::Plain:
        break;
    }
    TTextEdit *editor = p.Kind == TEditKind::Button ? new TButtonEdit(parent) : new TTextEdit(parent);
    if (p.MaxLength > 0)
        editor->setMaxLength(p.MaxLength);
    return editor;
}

void TGridDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *valueEditor = dynamic_cast<TValueEditor *>(editor)) {
        valueEditor->SetEditValue(index.data(Qt::EditRole));
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void TGridDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    auto *valueEditor = dynamic_cast<TValueEditor *>(editor);
    if (!valueEditor) {
        QStyledItemDelegate::setModelData(editor, model, index);
        return;
    }
    const QVariant value = valueEditor->EditValue();
    const QVariant old = index.data(Qt::EditRole);
    // Leaving a cell untouched is no edit.
    if (value == old || (value.toString().isEmpty() && (!old.isValid() || old.isNull())))
        return;
    model->setData(index, value, Qt::EditRole);
}
