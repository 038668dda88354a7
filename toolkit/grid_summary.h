#pragma once
// Footer sums of a grid: one item per summed column, recomputed over all rows whenever the rows change.

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

class TDBGridView;
class TGridColumn;

class TGridSummary : public QObject
{
    Q_OBJECT
public:
    struct Item
    {
        QPointer<TGridColumn> Column;
        // A number picture ("#,##0.00"); text after the number stays as written.
        QString Format;
        QVariant Sum; // null while there are no values
    };

    explicit TGridSummary(TDBGridView *view);

    int Add(TGridColumn *column, const QString &format);
    int Count() const { return int(m_items.size()); }
    const Item &At(int index) const { return m_items[index]; }
    // The sum of an item; null when the column had no values or the index is out of range.
    QVariant Sum(int index) const;
    QString Text(int index) const;
    void Clear();

    // Sums every row: a footer asks the dataset for all of its rows.
    void Recompute();

signals:
    // After each computation, for totals outside the grid.
    void AfterSummary();

private:
    TDBGridView *m_view;
    QList<Item> m_items;
    bool m_computing = false;
};
