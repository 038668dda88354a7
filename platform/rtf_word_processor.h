#pragma once
// The word processor of order documents, carried out by the RTF document engine: one active document,
// held in memory from Open to Close and written by SaveAs.

#include "rtf_document.h"
#include "word_processor.h"

#include <map>
#include <memory>

class RtfWordProcessor : public WordProcessor
{
public:
    RtfWordProcessor();
    ~RtfWordProcessor() override;

    void SetVisible(bool visible) override { m_visible = visible; }
    void SetDisplayAlerts(int alerts) override { m_displayAlerts = alerts; }
    bool Visible() const { return m_visible; }
    int DisplayAlerts() const { return m_displayAlerts; }

    void Open(const QString &fileName) override;
    void SetSelectionFontSize(int points) override;
    WordTable &Table(int index) override;

    void ClearFindFormatting() override {}
    int ReplaceAll(const WordFind &find) override;

    void SaveAs(const QString &fileName) override;
    void Close() override;
    void Quit() override;

    // The active document; throws when there is none.
    RtfDocument &Document();

private:
    class DocumentTable;

    std::unique_ptr<RtfDocument> m_document;
    std::map<int, std::unique_ptr<DocumentTable>> m_tables;
    int m_halfPoints = 0; // size of the text written from now on, 0 for the document's own
    bool m_visible = false;
    int m_displayAlerts = -1;
};
