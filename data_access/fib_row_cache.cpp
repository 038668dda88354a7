#include "fib_row_cache.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#ifdef __linux__
#include <sys/mman.h>
#endif

namespace {

// Blocks start small, since most datasets hold a few rows, and grow fourfold up to a limit. Blocks of
// two megabytes and more are laid on huge pages where the system offers them: a large fetch then
// takes a few page faults instead of thousands, which is most of what a fetch costs beyond the
// client library's own work.
constexpr size_t kFirstBlock = 4096;
constexpr size_t kLargestBlock = size_t(4) << 20;
constexpr size_t kHugePage = size_t(2) << 20;

char *allocateBlock(size_t &bytes)
{
    if (bytes < kHugePage)
        return static_cast<char *>(std::malloc(bytes));
    bytes = (bytes + kHugePage - 1) & ~(kHugePage - 1);
    char *p = static_cast<char *>(std::aligned_alloc(kHugePage, bytes));
#ifdef __linux__
    if (p)
        madvise(p, bytes, MADV_HUGEPAGE);
#endif
    return p;
}

QString rtrimmed(const QString &s)
{
    qsizetype n = s.size();
    while (n > 0 && s[n - 1] == QLatin1Char(' '))
        --n;
    return n == s.size() ? s : s.left(n);
}

} // namespace

void TFIBRowCache::SetColumns(TFIBXSQLDA &columns)
{
    Clear();
    m_columns.clear();
    m_varying.clear();
    const int n = columns.Count();
    // A row: one null flag per column, one slot per column, then the bytes of varying values.
    int slot = n;
    for (int i = 0; i < n; ++i) {
        const TFIBColumnMeta &meta = columns.Meta(i);
        Column c{meta, Storage::Fixed, slot, meta.Length};
        if (meta.SQLType == SQLVarying || meta.SQLType == SQLBlob) {
            c.Kind = meta.SQLType == SQLBlob ? Storage::Blob : Storage::Varying;
            c.Length = 4;
            m_varying.push_back(i);
        }
        slot += c.Length;
        m_columns.push_back(c);
    }
    m_fixedSize = slot;
}

char *TFIBRowCache::Allocate(size_t size)
{
    if (size > m_left) {
        m_nextBlock = m_nextBlock ? std::min(m_nextBlock * 4, kLargestBlock) : kFirstBlock;
        size_t bytes = std::max(size, m_nextBlock);
        char *block = allocateBlock(bytes);
        if (!block)
            throw std::bad_alloc();
        m_blocks.emplace_back(block);
        m_free = block;
        m_left = bytes;
    }
    char *p = m_free;
    m_free += size;
    m_left -= size;
    return p;
}

void TFIBRowCache::Append(TFIBXSQLDA &columns)
{
    const XSQLDA *da = columns.Handle();
    const int n = int(m_columns.size());

    size_t size = size_t(m_fixedSize);
    for (int i : m_varying) {
        const XSQLVAR &v = da->sqlvar[i];
        if (*v.sqlind < 0)
            continue;
        if (m_columns[size_t(i)].Kind == Storage::Varying) {
            unsigned short len;
            std::memcpy(&len, v.sqldata, 2);
            size += 2 + len;
        } else {
            size += 4 + 2 * size_t(columns.BlobValues()[i].toString().size());
        }
    }

    char *row = Allocate(size);
    char *tail = row + m_fixedSize;
    for (int i = 0; i < n; ++i) {
        const XSQLVAR &v = da->sqlvar[i];
        const Column &c = m_columns[size_t(i)];
        const bool isNull = *v.sqlind < 0;
        row[i] = char(isNull);
        if (isNull)
            continue;
        switch (c.Kind) {
        case Storage::Fixed:
            std::memcpy(row + c.Slot, v.sqldata, size_t(c.Length));
            break;
        case Storage::Varying: {
            const quint32 offset = quint32(tail - row);
            std::memcpy(row + c.Slot, &offset, 4);
            unsigned short len;
            std::memcpy(&len, v.sqldata, 2);
            std::memcpy(tail, v.sqldata, 2 + size_t(len));
            tail += 2 + size_t(len);
            break;
        }
        case Storage::Blob: {
            // Blob contents come already read and decoded; their UTF-16 is kept as it is.
            const QString text = columns.BlobValues()[i].toString();
            const quint32 offset = quint32(tail - row);
            std::memcpy(row + c.Slot, &offset, 4);
            const qint32 len = qint32(text.size());
            std::memcpy(tail, &len, 4);
            std::memcpy(tail + 4, text.constData(), 2 * size_t(len));
            tail += 4 + 2 * size_t(len);
            break;
        }
        }
    }
    m_rows.push_back(row);
}

void TFIBRowCache::Clear()
{
    std::vector<const char *>().swap(m_rows);
    m_blocks.clear();
    m_blocks.shrink_to_fit();
    m_free = nullptr;
    m_left = 0;
    m_nextBlock = 0;
}

QVariant TFIBRowCache::Value(int row, int column, bool trimText) const
{
    const char *p = m_rows[size_t(row)];
    if (p[column])
        return QVariant();
    const Column &c = m_columns[size_t(column)];
    if (c.Kind == Storage::Fixed) {
        QVariant v = DecodeColumnValue(c.Meta, p + c.Slot, false);
        return trimText && c.Meta.SQLType == SQLText ? rtrimmed(v.toString()) : v;
    }
    quint32 offset;
    std::memcpy(&offset, p + c.Slot, 4);
    if (c.Kind == Storage::Blob) {
        qint32 len;
        std::memcpy(&len, p + offset, 4);
        QString text(len, Qt::Uninitialized);
        std::memcpy(text.data(), p + offset + 4, 2 * size_t(len));
        return text;
    }
    QVariant v = DecodeColumnValue(c.Meta, p + offset, false);
    return trimText ? rtrimmed(v.toString()) : v;
}
