#include "rtf_word_processor.h"

// A table of the active document by its number; it asks the document each time, so that it follows
// every edit of the document.
class RtfWordProcessor::DocumentTable : public WordTable
{
public:
    DocumentTable(RtfWordProcessor &owner, int index) : m_owner(owner), m_index(index) {}

    void AddRow() override { m_owner.Document().AddRow(m_index); }
    int RowCount() const override { return m_owner.Document().RowCount(m_index); }
    void SetCellText(int row, int column, const QString &text) override
    {
        m_owner.Document().SetCellText(m_index, row, column, text, m_owner.m_halfPoints);
    }
    QString CellText(int row, int column) const override { return m_owner.Document().CellText(m_index, row, column); }

private:
    RtfWordProcessor &m_owner;
    int m_index;
};

RtfWordProcessor::RtfWordProcessor() = default;
RtfWordProcessor::~RtfWordProcessor() = default;

RtfDocument &RtfWordProcessor::Document()
{
    if (!m_document)
        throw EWordProcessorError(QStringLiteral("Нет открытого документа"));
    return *m_document;
}

void RtfWordProcessor::Open(const QString &fileName)
{
    auto document = std::make_unique<RtfDocument>(RtfDocument::Load(fileName));
    Close();
    m_document = std::move(document);
}

void RtfWordProcessor::SetSelectionFontSize(int points)
{
    if (points < 1 || points > 1638)
        throw EWordProcessorError(QStringLiteral("Недопустимый размер шрифта: %1").arg(points));
    m_halfPoints = points * 2;
}

WordTable &RtfWordProcessor::Table(int index)
{
    const int count = Document().TableCount();
    if (index < 1 || index > count)
        throw EWordProcessorError(
            QStringLiteral("В документе нет таблицы номер %1 (таблиц в нём: %2)").arg(index).arg(count));
    auto &table = m_tables[index];
    if (!table)
        table = std::make_unique<DocumentTable>(*this, index);
    return *table;
}

int RtfWordProcessor::ReplaceAll(const WordFind &find)
{
    if (find.MatchWildcards || find.MatchSoundsLike || find.MatchAllWordForms)
        throw EWordProcessorError(
            QStringLiteral("Поиск по шаблону, по звучанию и по словоформам не поддерживается"));
    // A replacement keeps the look of the text it replaces; only text written into cells takes the size set.
    return Document().ReplaceAll(find.Text, find.Replacement, find.MatchCase ? Qt::CaseSensitive : Qt::CaseInsensitive,
                                 find.MatchWholeWord, 0);
}

void RtfWordProcessor::SaveAs(const QString &fileName)
{
    Document().Save(fileName);
}

void RtfWordProcessor::Close()
{
    m_tables.clear();
    m_document.reset();
}

void RtfWordProcessor::Quit()
{
    Close();
    m_halfPoints = 0;
}
