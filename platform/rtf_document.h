#pragma once
// An RTF document held as the tokens of its file. Whatever is not edited is written back byte for
// byte: unknown control words, groups, destinations and pictures pass through untouched. Edits are
// the ones order documents need: rows added to a table, cell texts, replacing a text everywhere.
// Every failure is thrown as EWordProcessorError.

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <vector>

struct RtfCodeTable;

class RtfDocument
{
public:
    // Parses the bytes of an RTF file; name is how messages call the document.
    explicit RtfDocument(const QByteArray &bytes, const QString &name = QString());
    static RtfDocument Load(const QString &fileName);

    QByteArray ToRtf() const;
    // Writes a temporary file beside the target and renames it over, so a failure leaves the old file.
    void Save(const QString &fileName) const;

    // Tables of the main text (nested tables are part of a cell), counting from 1 like rows and columns.
    int TableCount() const;
    int RowCount(int table) const;
    int ColumnCount(int table, int row) const;
    // A copy of the last row (definition, borders, paragraph and character formatting) with empty cells.
    void AddRow(int table);
    // halfPoints > 0 gives the new text that size.
    void SetCellText(int table, int row, int column, const QString &text, int halfPoints = 0);
    QString CellText(int table, int row, int column) const;

    // Replaces every occurrence in the visible text, also where formatting or bookmarks split it; the
    // replacement takes the formatting of the occurrence's first character. Returns the count.
    int ReplaceAll(const QString &find, const QString &replacement, Qt::CaseSensitivity cs, bool wholeWord,
                   int halfPoints = 0);

    // The visible text: paragraphs and line breaks as "\n", cell and row ends as "\a".
    QString Text() const;

private:
    enum Kind : quint8 { Open, Close, Word, Symbol, Hex, Chars, Fallback, Binary, Space, Removed };
    struct Token
    {
        quint32 offset = 0; // into m_bytes
        quint32 length = 0;
        qint32 param = 0;
        quint16 id = 0; // of a known control word, 0 for the others
        quint8 kind = Chars;
        bool hasParam = false;
    };
    struct Row
    {
        int begin = 0, end = 0; // tokens [begin, end), balanced in braces
        std::vector<int> cells; // the \cell token of each column
    };
    struct Table
    {
        std::vector<Row> rows;
    };
    // Each visible character and the token (and byte of a text token) it comes from.
    struct Stream
    {
        QString chars;
        std::vector<std::pair<quint32, quint32>> refs;
    };
    class Walker;

    void Tokenize();
    void ReadHeader();
    const RtfCodeTable *CodeTableOf(int font) const;
    char32_t VisibleChar(const Token &token, int font) const;
    static bool IsTextual(const Token &token);

    const std::vector<Table> &Tables() const;
    const Row &RowAt(int table, int row) const;
    int CellStart(const Row &row, int column) const;
    const Stream &VisibleStream() const;
    void Edited() const { m_streamValid = false; }

    Token AddToken(Kind kind, QByteArrayView raw, int param = 0, quint16 id = 0, bool hasParam = false);
    Token AddWord(quint16 id, int param, bool hasParam);
    std::vector<Token> Encode(const QString &text, int halfPoints);
    void InsertTokens(int at, const std::vector<Token> &tokens);
    int MatchingClose(int open) const;
    bool IsBookmark(int open) const;

    // A group the engine wrote around a text of its own (its size), not the document's formatting.
    bool IsOwnGroup(int open) const { return m_tokens[open].kind == Open && m_tokens[open].offset >= m_fileSize; }

    QByteArray m_bytes; // the file's bytes, then the bytes of every token written since
    quint32 m_fileSize = 0;
    QString m_name;
    std::vector<Token> m_tokens;
    int m_codepage = 1252;
    int m_defaultFont = -1;
    const RtfCodeTable *m_codeTable = nullptr;
    QHash<int, const RtfCodeTable *> m_fontTables; // fonts whose charset differs from the document's
    mutable std::optional<std::vector<Table>> m_tables;
    // Kept with their capacity between edits: a document is rewritten dozens of times while filled.
    mutable Stream m_stream;
    mutable bool m_streamValid = false;
    std::vector<Token> m_spare;
};
