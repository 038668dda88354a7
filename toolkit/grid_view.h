#pragma once
// A data grid over a data source: columns bound to fields by name, the focused row kept on the
// dataset's current row both ways, rows fetched lazily as the user scrolls, optional in-place editing,
// footer sums, a pop-up menu and the text "Нет данных" over an empty grid.

#include "fib_datasource.h"

#include <QList>
#include <QMenu>
#include <QPointer>
#include <QTableView>

class TGridColumn;
class TGridModel;
class TGridSummary;

class TDBGridView : public QTableView
{
    Q_OBJECT
public:
    explicit TDBGridView(QWidget *parent = nullptr);
    ~TDBGridView() override;

    TDataSource *DataSource() const;
    void SetDataSource(TDataSource *source);
    TFIBDataSet *DataSet() const;
    TGridModel *Model() const { return m_model; }

    // Columns, in their order.
    int ColumnCount() const { return int(m_columns.size()); }
    TGridColumn *Columns(int index) const { return m_columns.value(index); }
    const QList<TGridColumn *> &ColumnList() const { return m_columns; }
    TGridColumn *CreateColumn(const QString &fieldName);
    // Takes the column out of the view and frees it.
    void DeleteColumn(TGridColumn *column);
    // The first column bound to the field; names compare without regard to case.
    TGridColumn *FindColumnByFieldName(const QString &fieldName) const;
    int IndexOf(const TGridColumn *column) const { return m_columns.indexOf(const_cast<TGridColumn *>(column)); }

    // In-place editing of the columns that allow it; off by default.
    bool Editing() const { return m_editing; }
    void SetEditing(bool value);
    // Selection of single cells instead of whole rows.
    bool CellSelect() const { return m_cellSelect; }
    void SetCellSelect(bool value);
    // Columns share the width of the grid in proportion to their widths.
    bool ColumnAutoWidth() const { return m_autoWidth; }
    void SetColumnAutoWidth(bool value);
    QString EmptyText = QStringLiteral("Нет данных");

    // Rows fetched so far.
    int RowCount() const;
    int FocusedRowIndex() const;
    // Moves the dataset's cursor to the row, fetching up to it; a row that does not exist changes nothing.
    void SetFocusedRowIndex(int row);
    int TopRowIndex() const;
    void SetTopRowIndex(int row);
    QVariant Value(int row, int column) const;
    QString DisplayText(int row, int column) const;

    // Footer sums; the footer shows under the grid while FooterVisible.
    bool FooterVisible() const { return m_footerVisible; }
    void SetFooterVisible(bool value);
    TGridSummary *Summary() const { return m_summary; }

    // The menu of a right click on the rows.
    void SetPopupMenu(QMenu *menu) { m_popupMenu = menu; }
    QMenu *PopupMenu() const { return m_popupMenu; }

signals:
    void DblClick();
    // A value typed or chosen in a cell went into the dataset's current row.
    void EditValueChanged(TGridColumn *column);
    void ColumnsChanged();
    void FooterVisibleChanged(bool visible);

protected:
    // Ctrl+End goes to the select's last row, fetching the rest at once.
    QModelIndex moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void DataSetScrolled(int row);
    void FollowDataSet();
    void ApplyColumn(TGridColumn *column);
    void ApplyAutoWidth();
    void ApplyEditTriggers();
    void HeaderMenu(const QPoint &pos);
    void SectionResized(int section, int oldSize, int newSize);
    void RecomputeSummary();

    TGridModel *m_model;
    TGridSummary *m_summary;
    QList<TGridColumn *> m_columns;
    QPointer<QMenu> m_popupMenu;
    QPointer<TFIBDataSet> m_followed;
    QList<QMetaObject::Connection> m_followConnections;
    bool m_editing = false;
    bool m_cellSelect = false;
    bool m_autoWidth = true;
    bool m_footerVisible = false;
    bool m_syncing = false;
    bool m_applyingWidths = false;
};
