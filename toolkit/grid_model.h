#pragma once
// Rows of a dataset as a table model: as many rows as the dataset has fetched, more fetched as the
// view scrolls towards the end, one model column per grid column.

#include "fib_datasource.h"

#include <QAbstractTableModel>
#include <QMetaObject>
#include <QPointer>
#include <QSet>

class TDBGridView;
class TGridColumn;
class TLookupList;

class TGridModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit TGridModel(TDBGridView *view);

    void SetDataSource(TDataSource *source);
    TDataSource *DataSource() const { return m_source; }
    TFIBDataSet *DataSet() const { return m_source ? m_source->DataSet() : nullptr; }

    // Rows asked of the dataset the first time the view wants more; each later ask brings at least as
    // many rows as the grid already holds.
    int FetchBatch = 100;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;

    // The raw value of a column in a row; the field of the column by name, or null.
    QVariant Value(int row, const TGridColumn *column) const;
    TFIBField *FieldOf(const TGridColumn *column) const;
    QString DisplayText(int row, const TGridColumn *column) const;

    // Takes in rows the dataset fetched by itself (a search, a move).
    void SyncRowCount();

    // The view adds columns through these.
    void BeginAppendColumn();
    void EndAppendColumn();
    void BeginRemoveColumn(int column);
    void EndRemoveColumn();
    void ColumnChanged(int column);

signals:
    // A value was put into the dataset from a cell.
    void CellEdited(int row, int column);

private:
    void Rebind();
    void Reset();
    void RowChanged(int row);
    void WatchLookup(TLookupList *list) const;

    TDBGridView *m_view;
    QPointer<TDataSource> m_source;
    QPointer<TFIBDataSet> m_dataSet;
    QList<QMetaObject::Connection> m_connections;
    int m_rows = 0;
    mutable QSet<TLookupList *> m_watched;
};
