#include "grid_model.h"

#include "app_exception.h"
#include "grid_column.h"
#include "grid_view.h"
#include "lookup_list.h"
#include "value_display.h"

TGridModel::TGridModel(TDBGridView *view) : QAbstractTableModel(view), m_view(view)
{
}

void TGridModel::SetDataSource(TDataSource *source)
{
    if (m_source)
        disconnect(m_source, nullptr, this, nullptr);
    m_source = source;
    if (source)
        connect(source, &TDataSource::DataSetChanged, this, &TGridModel::Rebind);
    Rebind();
}

void TGridModel::Rebind()
{
    for (const auto &c : std::as_const(m_connections))
        disconnect(c);
    m_connections.clear();
    m_dataSet = DataSet();
    if (TFIBDataSet *ds = m_dataSet) {
        m_connections << connect(ds, &TFIBDataSet::Opened, this, &TGridModel::Reset)
                      << connect(ds, &TFIBDataSet::Closed, this, &TGridModel::Reset)
                      << connect(ds, &TFIBDataSet::RowsFetched, this, &TGridModel::SyncRowCount)
                      << connect(ds, &TFIBDataSet::RowChanged, this, &TGridModel::RowChanged)
                      << connect(ds, &TFIBDataSet::FieldChanged, this,
                                 [this] { RowChanged(m_dataSet ? m_dataSet->CurrentIndex() : -1); })
                      << connect(ds, &TFIBDataSet::StateChanged, this,
                                 [this] { RowChanged(m_dataSet ? m_dataSet->CurrentIndex() : -1); });
    }
    Reset();
}

void TGridModel::Reset()
{
    beginResetModel();
    m_rows = m_dataSet && m_dataSet->Active() ? m_dataSet->RecordCount() : 0;
    endResetModel();
}

void TGridModel::SyncRowCount()
{
    const int have = m_dataSet && m_dataSet->Active() ? m_dataSet->RecordCount() : 0;
    if (have > m_rows) {
        beginInsertRows(QModelIndex(), m_rows, have - 1);
        m_rows = have;
        endInsertRows();
    } else if (have < m_rows) {
        Reset();
    }
}

void TGridModel::RowChanged(int row)
{
    if (row < 0 || row >= m_rows || columnCount() == 0)
        return;
    emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int TGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int TGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_view->ColumnCount();
}

TFIBField *TGridModel::FieldOf(const TGridColumn *column) const
{
    if (!column || !m_dataSet || !m_dataSet->Active())
        return nullptr;
    return m_dataSet->FindField(column->FieldName());
}

QVariant TGridModel::Value(int row, const TGridColumn *column) const
{
    TFIBField *field = FieldOf(column);
    if (!field || row < 0 || row >= m_rows)
        return QVariant();
    return m_dataSet->RowValue(row, field->Index());
}

void TGridModel::WatchLookup(TLookupList *list) const
{
    if (!list || m_watched.contains(list))
        return;
    m_watched.insert(list);
    auto *self = const_cast<TGridModel *>(this);
    connect(list, &TLookupList::Changed, self, [self] {
        if (self->m_rows > 0 && self->columnCount() > 0)
            emit self->dataChanged(self->index(0, 0), self->index(self->m_rows - 1, self->columnCount() - 1));
    });
    connect(list, &QObject::destroyed, self, [self, list] { self->m_watched.remove(list); });
}

QString TGridModel::DisplayText(int row, const TGridColumn *column) const
{
    const TEditProperties &p = *column->Properties();
    if (p.Kind == TEditKind::Lookup)
        WatchLookup(TLookupList::For(p.ListDataSet(), p.KeyField(), p.ListField()));
    return TValueDisplay::Text(p, FieldOf(column), Value(row, column));
}

QVariant TGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows)
        return QVariant();
    const TGridColumn *column = m_view->Columns(index.column());
    if (!column)
        return QVariant();
    const TEditProperties &p = *column->Properties();
    try {
        switch (role) {
        case Qt::DisplayRole:
            if (p.Kind == TEditKind::CheckBox)
                return QVariant();
            return DisplayText(index.row(), column);
        case Qt::EditRole:
            return Value(index.row(), column);
        case Qt::CheckStateRole:
            if (p.Kind != TEditKind::CheckBox)
                return QVariant();
            return p.IsChecked(Value(index.row(), column)) ? Qt::Checked : Qt::Unchecked;
        case Qt::TextAlignmentRole:
            return int((TValueDisplay::AlignsRight(p, FieldOf(column)) ? Qt::AlignRight : Qt::AlignLeft)
                       | Qt::AlignVCenter);
        default:
            return QVariant();
        }
    } catch (const std::exception &) {
        // A list that cannot be read shows nothing rather than stopping the painting.
        return QVariant();
    }
}

QVariant TGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return QVariant();
    if (orientation == Qt::Vertical)
        return section + 1;
    const TGridColumn *column = m_view->Columns(section);
    return column ? column->Caption() : QVariant();
}

Qt::ItemFlags TGridModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    const TGridColumn *column = m_view->Columns(index.column());
    if (column && m_view->Editing() && column->Editable()) {
        if (column->Properties()->Kind == TEditKind::CheckBox)
            flags |= Qt::ItemIsUserCheckable;
        else
            flags |= Qt::ItemIsEditable;
    }
    return flags;
}

bool TGridModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || !m_dataSet || !m_dataSet->Active())
        return false;
    TGridColumn *column = m_view->Columns(index.column());
    TFIBField *field = FieldOf(column);
    if (!field || (role != Qt::EditRole && role != Qt::CheckStateRole))
        return false;
    QVariant v = value;
    if (role == Qt::CheckStateRole)
        v = value.toInt() == Qt::Checked ? column->Properties()->ValueChecked : column->Properties()->ValueUnchecked;
    try {
        if (m_dataSet->CurrentIndex() != index.row())
            m_dataSet->MoveTo(index.row());
        if (m_dataSet->State() == dsBrowse)
            m_dataSet->Edit();
        field->SetValue(v);
    } catch (...) {
        HandleCurrentException();
        return false;
    }
    emit CellEdited(index.row(), index.column());
    return true;
}

bool TGridModel::canFetchMore(const QModelIndex &parent) const
{
    return !parent.isValid() && m_dataSet && m_dataSet->Active() && !m_dataSet->AllFetched();
}

void TGridModel::fetchMore(const QModelIndex &parent)
{
    if (!canFetchMore(parent))
        return;
    try {
        // Every ask costs the view a layout and a paint: asks that double the rows reach the end of a
        // long select in a handful of them rather than in one per hundred rows.
        m_dataSet->FetchMore(qMax(FetchBatch, m_dataSet->RecordCount()));
    } catch (...) {
        HandleCurrentException();
    }
    SyncRowCount();
}

void TGridModel::BeginAppendColumn()
{
    const int n = columnCount();
    beginInsertColumns(QModelIndex(), n, n);
}

void TGridModel::EndAppendColumn()
{
    endInsertColumns();
}

void TGridModel::BeginRemoveColumn(int column)
{
    beginRemoveColumns(QModelIndex(), column, column);
}

void TGridModel::EndRemoveColumn()
{
    endRemoveColumns();
}

void TGridModel::ColumnChanged(int column)
{
    if (column < 0)
        return;
    emit headerDataChanged(Qt::Horizontal, column, column);
    if (m_rows > 0)
        emit dataChanged(index(0, column), index(m_rows - 1, column));
}
