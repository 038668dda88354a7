#include "grid_summary.h"

#include "fib_dataset.h"
#include "grid_column.h"
#include "grid_view.h"

TGridSummary::TGridSummary(TDBGridView *view) : QObject(view), m_view(view)
{
}

int TGridSummary::Add(TGridColumn *column, const QString &format)
{
    m_items.append({column, format, QVariant()});
    Recompute();
    return int(m_items.size()) - 1;
}

QVariant TGridSummary::Sum(int index) const
{
    return index >= 0 && index < m_items.size() ? m_items[index].Sum : QVariant();
}

QString TGridSummary::Text(int index) const
{
    const QVariant sum = Sum(index);
    return sum.isValid() ? FormatFieldValue(sum, m_items[index].Format) : QString();
}

void TGridSummary::Clear()
{
    m_items.clear();
}

void TGridSummary::Recompute()
{
    if (m_computing || m_items.isEmpty())
        return;
    m_computing = true;
    TFIBDataSet *ds = m_view->DataSet();
    try {
        if (ds && ds->Active() && !ds->AllFetched())
            ds->FetchAll();
    } catch (...) {
        m_computing = false;
        throw;
    }
    for (Item &item : m_items) {
        item.Sum = QVariant();
        TFIBField *field = ds && ds->Active() && item.Column ? ds->FindField(item.Column->FieldName()) : nullptr;
        if (!field)
            continue;
        double sum = 0;
        bool any = false;
        for (int row = 0; row < ds->RecordCount(); ++row) {
            QVariant v = ds->RowValue(row, field->Index());
            if (v.metaType() == QMetaType::fromType<TFIBCurrency>())
                v = v.value<TFIBCurrency>().ToDouble();
            bool ok = false;
            const double x = v.toDouble(&ok);
            if (v.isValid() && !v.isNull() && ok) {
                sum += x;
                any = true;
            }
        }
        if (any)
            item.Sum = sum;
    }
    m_computing = false;
    emit AfterSummary();
}
