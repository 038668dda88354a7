#include "grid_view.h"

#include "app_exception.h"
#include "grid_column.h"
#include "grid_delegate.h"
#include "grid_model.h"
#include "grid_summary.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

TDBGridView::TDBGridView(QWidget *parent) : QTableView(parent)
{
    setObjectName(QStringLiteral("GridView"));
    m_model = new TGridModel(this);
    setModel(m_model);
    m_summary = new TGridSummary(this);
    setItemDelegate(new TGridDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    verticalHeader()->setVisible(false);
    verticalHeader()->setDefaultSectionSize(22);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsMovable(false);
    horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(horizontalHeader(), &QHeaderView::customContextMenuRequested, this, &TDBGridView::HeaderMenu);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, &TDBGridView::SectionResized);
    connect(m_model, &TGridModel::CellEdited, this, [this](int, int column) {
        // Told after the editor has let go of the cell: a handler may reopen the dataset.
        QPointer<TGridColumn> edited = Columns(column);
        QTimer::singleShot(0, this, [this, edited] {
            if (edited)
                emit EditValueChanged(edited);
        });
    });
    ApplyEditTriggers();
}

TDBGridView::~TDBGridView()
{
    // The model and the columns go while the view's members still stand.
    setModel(nullptr);
    delete m_model;
    const QList<TGridColumn *> columns = m_columns;
    m_columns.clear();
    for (TGridColumn *column : columns) {
        column->disconnect(this);
        delete column;
    }
}

TDataSource *TDBGridView::DataSource() const
{
    return m_model->DataSource();
}

TFIBDataSet *TDBGridView::DataSet() const
{
    return m_model->DataSet();
}

void TDBGridView::SetDataSource(TDataSource *source)
{
    if (DataSource())
        disconnect(DataSource(), nullptr, this, nullptr);
    m_model->SetDataSource(source);
    if (source)
        connect(source, &TDataSource::DataSetChanged, this, &TDBGridView::FollowDataSet);
    FollowDataSet();
}

void TDBGridView::FollowDataSet()
{
    for (const auto &c : std::as_const(m_followConnections))
        disconnect(c);
    m_followConnections.clear();
    m_followed = DataSet();
    if (TFIBDataSet *ds = m_followed) {
        m_followConnections << connect(ds, &TFIBDataSet::Scrolled, this, &TDBGridView::DataSetScrolled)
                            << connect(ds, &TFIBDataSet::Opened, this, &TDBGridView::RecomputeSummary)
                            << connect(ds, &TFIBDataSet::Closed, this, &TDBGridView::RecomputeSummary)
                            << connect(ds, &TFIBDataSet::RowChanged, this, &TDBGridView::RecomputeSummary);
        DataSetScrolled(ds->CurrentIndex());
    }
}

TGridColumn *TDBGridView::CreateColumn(const QString &fieldName)
{
    m_model->BeginAppendColumn();
    auto *column = new TGridColumn(this, fieldName);
    m_columns.append(column);
    m_model->EndAppendColumn();
    connect(column, &TGridColumn::Changed, this, [this, column] { ApplyColumn(column); });
    connect(column, &QObject::destroyed, this, [this, column] { m_columns.removeAll(column); });
    ApplyColumn(column);
    emit ColumnsChanged();
    return column;
}

void TDBGridView::DeleteColumn(TGridColumn *column)
{
    const int index = IndexOf(column);
    if (index < 0)
        return;
    m_model->BeginRemoveColumn(index);
    m_columns.removeAt(index);
    m_model->EndRemoveColumn();
    column->disconnect(this);
    delete column;
    emit ColumnsChanged();
}

TGridColumn *TDBGridView::FindColumnByFieldName(const QString &fieldName) const
{
    for (TGridColumn *column : m_columns)
        if (column->FieldName().compare(fieldName, Qt::CaseInsensitive) == 0)
            return column;
    return nullptr;
}

void TDBGridView::ApplyColumn(TGridColumn *column)
{
    const int index = IndexOf(column);
    if (index < 0)
        return;
    setColumnHidden(index, !column->Visible());
    if (!m_autoWidth) {
        m_applyingWidths = true;
        setColumnWidth(index, column->Width());
        m_applyingWidths = false;
    }
    m_model->ColumnChanged(index);
    ApplyAutoWidth();
    emit ColumnsChanged();
}

void TDBGridView::SetEditing(bool value)
{
    m_editing = value;
    ApplyEditTriggers();
}

void TDBGridView::SetCellSelect(bool value)
{
    m_cellSelect = value;
    setSelectionBehavior(value ? QAbstractItemView::SelectItems : QAbstractItemView::SelectRows);
}

void TDBGridView::SetColumnAutoWidth(bool value)
{
    m_autoWidth = value;
    for (TGridColumn *column : std::as_const(m_columns))
        ApplyColumn(column);
}

void TDBGridView::ApplyEditTriggers()
{
    setEditTriggers(m_editing ? QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
                                    | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed
                              : QAbstractItemView::NoEditTriggers);
}

void TDBGridView::ApplyAutoWidth()
{
    if (!m_autoWidth)
        return;
    const int available = viewport()->width();
    int total = 0;
    QList<int> shown;
    for (int i = 0; i < m_columns.size(); ++i)
        if (m_columns[i]->Visible()) {
            total += qMax(1, m_columns[i]->Width());
            shown << i;
        }
    if (total <= 0 || available <= 0)
        return;
    m_applyingWidths = true;
    int used = 0;
    for (int k = 0; k < shown.size(); ++k) {
        const int i = shown[k];
        int w = k == shown.size() - 1 ? available - used
                                      : int(qint64(qMax(1, m_columns[i]->Width())) * available / total);
        w = qMax(16, w);
        setColumnWidth(i, w);
        used += w;
    }
    m_applyingWidths = false;
}

void TDBGridView::SectionResized(int section, int, int newSize)
{
    if (m_applyingWidths || m_autoWidth)
        return;
    if (TGridColumn *column = Columns(section)) {
        const QSignalBlocker block(column);
        column->SetWidth(newSize);
    }
}

void TDBGridView::HeaderMenu(const QPoint &pos)
{
    QMenu menu(this);
    for (TGridColumn *column : std::as_const(m_columns)) {
        QAction *item = menu.addAction(column->Caption());
        item->setCheckable(true);
        item->setChecked(column->Visible());
        connect(item, &QAction::toggled, column, &TGridColumn::SetVisible);
    }
    menu.exec(horizontalHeader()->mapToGlobal(pos));
}

int TDBGridView::RowCount() const
{
    return m_model->rowCount();
}

int TDBGridView::FocusedRowIndex() const
{
    TFIBDataSet *ds = DataSet();
    if (ds && ds->Active())
        return ds->CurrentIndex();
    return currentIndex().isValid() ? currentIndex().row() : -1;
}

void TDBGridView::SetFocusedRowIndex(int row)
{
    TFIBDataSet *ds = DataSet();
    if (!ds || !ds->Active() || row < 0)
        return;
    if (row != ds->CurrentIndex())
        ds->MoveTo(row);
    else
        DataSetScrolled(row);
}

int TDBGridView::TopRowIndex() const
{
    return RowCount() > 0 ? verticalScrollBar()->value() : 0;
}

void TDBGridView::SetTopRowIndex(int row)
{
    if (row < 0)
        return;
    // A page of rows below the top one must be there for the grid to scroll that far.
    const int page = qMax(1, viewport()->height() / qMax(1, verticalHeader()->defaultSectionSize()));
    while (RowCount() < row + page && m_model->canFetchMore(QModelIndex()))
        m_model->fetchMore(QModelIndex());
    updateGeometries();
    verticalScrollBar()->setValue(row);
}

QVariant TDBGridView::Value(int row, int column) const
{
    return m_model->Value(row, Columns(column));
}

QString TDBGridView::DisplayText(int row, int column) const
{
    TGridColumn *c = Columns(column);
    return c && row >= 0 && row < RowCount() ? m_model->DisplayText(row, c) : QString();
}

void TDBGridView::SetFooterVisible(bool value)
{
    if (value == m_footerVisible)
        return;
    m_footerVisible = value;
    RecomputeSummary();
    emit FooterVisibleChanged(value);
}

void TDBGridView::RecomputeSummary()
{
    try {
        m_summary->Recompute();
    } catch (...) {
        HandleCurrentException();
    }
}

void TDBGridView::DataSetScrolled(int row)
{
    if (m_syncing)
        return;
    m_model->SyncRowCount();
    m_syncing = true;
    if (row >= 0 && row < RowCount()) {
        int column = currentIndex().isValid() ? currentIndex().column() : -1;
        if (column < 0 || isColumnHidden(column)) {
            column = 0;
            for (int i = 0; i < m_columns.size(); ++i)
                if (!isColumnHidden(i)) {
                    column = i;
                    break;
                }
        }
        if (column < m_model->columnCount())
            setCurrentIndex(m_model->index(row, column));
    } else if (selectionModel()) {
        selectionModel()->clearCurrentIndex();
    }
    m_syncing = false;
}

void TDBGridView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTableView::currentChanged(current, previous);
    if (m_syncing || !current.isValid())
        return;
    TFIBDataSet *ds = DataSet();
    if (!ds || !ds->Active() || current.row() == ds->CurrentIndex())
        return;
    m_syncing = true;
    try {
        ds->MoveTo(current.row());
    } catch (...) {
        HandleCurrentException();
    }
    m_syncing = false;
    if (ds->CurrentIndex() != current.row()) {
        // The move was refused: the grid goes back to the dataset's row.
        QPointer<TFIBDataSet> guarded = ds;
        QTimer::singleShot(0, this, [this, guarded] {
            if (guarded)
                DataSetScrolled(guarded->CurrentIndex());
        });
    }
}

QModelIndex TDBGridView::moveCursor(CursorAction cursorAction, Qt::KeyboardModifiers modifiers)
{
    TFIBDataSet *ds = DataSet();
    if (cursorAction == MoveEnd && (modifiers & Qt::ControlModifier) && ds && ds->Active() && !ds->AllFetched()) {
        try {
            ds->FetchAll();
        } catch (...) {
            HandleCurrentException();
        }
    }
    return QTableView::moveCursor(cursorAction, modifiers);
}

void TDBGridView::mouseDoubleClickEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    QTableView::mouseDoubleClickEvent(event);
    // A double click that opened a cell's editor belongs to the edit: the window's own double click
    // (a card, a choice) would take the cell away from the user.
    if (index.isValid() && state() != EditingState)
        emit DblClick();
}

void TDBGridView::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_popupMenu) {
        QTableView::contextMenuEvent(event);
        return;
    }
    m_popupMenu->popup(event->globalPos());
    event->accept();
}

void TDBGridView::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    if (RowCount() > 0 || EmptyText.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
    painter.drawText(viewport()->rect().adjusted(4, 12, -4, 0), Qt::AlignHCenter | Qt::AlignTop, EmptyText);
}

void TDBGridView::resizeEvent(QResizeEvent *event)
{
    QTableView::resizeEvent(event);
    ApplyAutoWidth();
}
