#pragma once
// The word processor that fills order documents: one instance, one active document, driven by the
// operations the documents need and nothing more. Every failure is thrown as EWordProcessorError.

#include <QString>
#include <functional>
#include <memory>
#include <stdexcept>

class EWordProcessorError : public std::runtime_error
{
public:
    explicit EWordProcessorError(const QString &message);
    QString Message() const;
};

// A table of the active document; rows and columns count from 1, the header row included.
class WordTable
{
public:
    virtual ~WordTable() = default;
    // Appends one row after the last, with the last row's cells, widths and borders and empty texts.
    virtual void AddRow() = 0;
    virtual int RowCount() const = 0;
    // Throws when the row or the column does not exist.
    virtual void SetCellText(int row, int column, const QString &text) = 0;
    virtual QString CellText(int row, int column) const = 0;
};

// The settings of a search; the defaults are a plain forward search over the whole document,
// wrapping round, case-insensitive, with no pattern matching.
struct WordFind
{
    QString Text;
    QString Replacement;
    bool Forward = true;
    int Wrap = 1;
    bool Format = false;
    bool MatchCase = false;
    bool MatchWholeWord = false;
    bool MatchWildcards = false;
    bool MatchSoundsLike = false;
    bool MatchAllWordForms = false;
};

class WordProcessor
{
public:
    virtual ~WordProcessor() = default;

    virtual void SetVisible(bool visible) = 0;
    // 0: no question during a save; -1: questions as usual.
    virtual void SetDisplayAlerts(int alerts) = 0;

    // The file becomes the active document, whatever its extension.
    virtual void Open(const QString &fileName) = 0;
    // The size in points of the text written from now on.
    virtual void SetSelectionFontSize(int points) = 0;
    // The n-th table of the active document, counting from 1; throws when there is none.
    virtual WordTable &Table(int index) = 0;

    // Drops any formatting condition of the search and of its replacement.
    virtual void ClearFindFormatting() = 0;
    // Replaces every occurrence of find.Text; returns how many were replaced.
    virtual int ReplaceAll(const WordFind &find) = 0;

    virtual void SaveAs(const QString &fileName) = 0;
    virtual void Close() = 0;
    virtual void Quit() = 0;

    // A new instance of the word processor in force; throws when none can be had.
    static std::unique_ptr<WordProcessor> Create();
    // Replaces how instances are made (tests); an empty factory restores the document engine.
    static void InstallFactory(std::function<std::unique_ptr<WordProcessor>()> factory);
};
