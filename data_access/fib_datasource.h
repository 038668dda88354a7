#pragma once
// What binds a view or an editor to a dataset; the dataset behind it can be swapped at run time.

#include "fib_dataset.h"

#include <QObject>
#include <QPointer>

class TDataSource : public QObject
{
    Q_OBJECT
public:
    explicit TDataSource(QObject *owner = nullptr, TFIBDataSet *dataSet = nullptr) : QObject(owner), m_dataSet(dataSet) {}

    TFIBDataSet *DataSet() const { return m_dataSet; }
    void SetDataSet(TFIBDataSet *dataSet)
    {
        if (m_dataSet == dataSet)
            return;
        m_dataSet = dataSet;
        emit DataSetChanged();
    }

signals:
    void DataSetChanged();

private:
    QPointer<TFIBDataSet> m_dataSet;
};
