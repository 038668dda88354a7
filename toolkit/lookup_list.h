#pragma once
// The rows of a lookup's list dataset as key and text pairs, read in full once per opening of the list
// and shared by every column and editor that shows the same pair of fields.

#include "fib_dataset.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QVariant>

class TLookupList : public QObject
{
    Q_OBJECT
public:
    // The one list of these fields of `dataSet`; it lives as long as the dataset.
    static TLookupList *For(TFIBDataSet *dataSet, const QString &keyField, const QString &listField);

    // Text of the row whose key equals `key`; empty when no row has it or the list is closed.
    QString TextOf(const QVariant &key);
    // Key of the first row shown as `text` (exact match); invalid when there is none.
    QVariant KeyOf(const QString &text);
    // All rows in the dataset's order.
    const QList<QPair<QVariant, QString>> &Items();

signals:
    // The list dataset was opened, closed or changed: shown texts may differ now.
    void Changed();

private:
    TLookupList(TFIBDataSet *dataSet, const QString &keyField, const QString &listField);
    void Invalidate();
    void Load();

    QPointer<TFIBDataSet> m_dataSet;
    QString m_keyField;
    QString m_listField;
    bool m_loaded = false;
    bool m_loading = false;
    QList<QPair<QVariant, QString>> m_items;
    QHash<QString, int> m_byKey;
};
