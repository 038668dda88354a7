#include "lookup_list.h"

namespace {

// Keys compare by their text: an integer key and the same key read as a float are one key.
QString keyText(const QVariant &key)
{
    if (!key.isValid() || key.isNull())
        return QString();
    bool ok = false;
    const double number = key.toDouble(&ok);
    if (ok && key.typeId() != QMetaType::QString)
        return QString::number(number, 'g', 17);
    return key.toString();
}

} // namespace

TLookupList *TLookupList::For(TFIBDataSet *dataSet, const QString &keyField, const QString &listField)
{
    if (!dataSet)
        return nullptr;
    const QString name = QStringLiteral("lookup:%1:%2").arg(keyField.toUpper(), listField.toUpper());
    if (auto *existing = dataSet->findChild<TLookupList *>(name, Qt::FindDirectChildrenOnly))
        return existing;
    auto *list = new TLookupList(dataSet, keyField, listField);
    list->setObjectName(name);
    return list;
}

TLookupList::TLookupList(TFIBDataSet *dataSet, const QString &keyField, const QString &listField)
    : QObject(dataSet), m_dataSet(dataSet), m_keyField(keyField), m_listField(listField)
{
    connect(dataSet, &TFIBDataSet::Opened, this, &TLookupList::Invalidate);
    connect(dataSet, &TFIBDataSet::Closed, this, &TLookupList::Invalidate);
    connect(dataSet, &TFIBDataSet::RowChanged, this, &TLookupList::Invalidate);
    connect(dataSet, &TFIBDataSet::RowsFetched, this, &TLookupList::Invalidate);
}

void TLookupList::Invalidate()
{
    if (m_loading)
        return;
    m_loaded = false;
    m_items.clear();
    m_byKey.clear();
    emit Changed();
}

void TLookupList::Load()
{
    if (m_loaded || !m_dataSet || !m_dataSet->Active())
        return;
    TFIBField *key = m_dataSet->FindField(m_keyField);
    TFIBField *text = m_dataSet->FindField(m_listField);
    if (!key || !text)
        return;
    m_loading = true;
    // A list is small; all of it is wanted as soon as one text is asked for.
    try {
        m_dataSet->FetchAll();
    } catch (...) {
        m_loading = false;
        throw;
    }
    m_loading = false;
    for (int row = 0; row < m_dataSet->RecordCount(); ++row) {
        const QVariant k = m_dataSet->RowValue(row, key->Index());
        const QVariant t = m_dataSet->RowValue(row, text->Index());
        const QString shown = FormatFieldValue(t, text->DisplayFormat);
        if (!m_byKey.contains(keyText(k)))
            m_byKey.insert(keyText(k), int(m_items.size()));
        m_items.append({k, shown});
    }
    m_loaded = true;
}

QString TLookupList::TextOf(const QVariant &key)
{
    Load();
    const auto it = m_byKey.constFind(keyText(key));
    return it == m_byKey.constEnd() || keyText(key).isEmpty() ? QString() : m_items[*it].second;
}

QVariant TLookupList::KeyOf(const QString &text)
{
    Load();
    for (const auto &item : std::as_const(m_items))
        if (item.second == text)
            return item.first;
    return QVariant();
}

const QList<QPair<QVariant, QString>> &TLookupList::Items()
{
    Load();
    return m_items;
}
