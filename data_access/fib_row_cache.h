#pragma once
// The rows a dataset has fetched, kept as the client library laid them out: one copy per row into large
// blocks that never move, decoded into values only when a value is asked for.

#include "fib_xsqlvar.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <vector>

class TFIBRowCache
{
public:
    TFIBRowCache() = default;
    TFIBRowCache(const TFIBRowCache &) = delete;
    TFIBRowCache &operator=(const TFIBRowCache &) = delete;

    // Takes the layout of the statement's output columns; drops every row.
    void SetColumns(TFIBXSQLDA &columns);
    // Copies the row now in the statement's buffers (with blob contents already read).
    void Append(TFIBXSQLDA &columns);
    // Drops every row and gives the memory back.
    void Clear();

    int Count() const { return int(m_rows.size()); }
    // The value of a column of a row; null for a null column. Text is trimmed of trailing blanks on request.
    QVariant Value(int row, int column, bool trimText) const;

private:
    enum class Storage : char { Fixed, Varying, Blob };
    struct Column
    {
        TFIBColumnMeta Meta;
        Storage Kind;
        int Slot;   // offset of the value, or of the offset of a varying value, in the row
        int Length; // bytes of a fixed value
    };
    char *Allocate(size_t size);

    std::vector<Column> m_columns;
    std::vector<int> m_varying; // columns whose bytes follow the fixed part of the row
    int m_fixedSize = 0;        // null flags, then one slot per column

    std::vector<const char *> m_rows;
    struct Free
    {
        void operator()(char *p) const { std::free(p); }
    };
    std::vector<std::unique_ptr<char, Free>> m_blocks;
    char *m_free = nullptr;
    size_t m_left = 0;
    size_t m_nextBlock = 0;
};
