#pragma once
// In-place editors of a grid's cells, chosen by the kind of the column's settings.

#include <QStyledItemDelegate>

class TDBGridView;

class TGridDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit TGridDelegate(TDBGridView *view);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    TDBGridView *m_view;
};
