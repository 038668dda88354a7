#include "quick_add_lookup.h"

#include "custom_dict_fm.h"
#include "db_editors.h"
#include "field_name_grammar.h"

void InstallQuickAdd(TCustomDictFM *card, const QList<TQuickAddLookup> &lookups)
{
    for (const TQuickAddLookup &lookup : lookups) {
        auto *combo = card->findChild<TDBLookupComboBox *>(TFieldNameGrammar::ComplexEditorName(lookup.Field));
        if (!combo)
            continue;
        combo->OnNewLookupDisplayText = [card, combo, lookup](const QString &text) {
            TpFIBQuery *query = card->CardQuery;
            if (query->Transaction() && !query->Transaction()->Active())
                query->Transaction()->StartTransaction();
            query->ExecProcedure(lookup.SaveProc, {combo->EditValue(), text});
            lookup.List->Close();
            lookup.List->Open();
        };
    }
}

void PostEditValue(QWidget *editor)
{
    if (!editor)
        return;
    if (auto *combo = dynamic_cast<TLookupComboBox *>(editor))
        combo->ValidateTyping();
    if (auto *link = editor->findChild<TFieldDataLink *>(QString(), Qt::FindDirectChildrenOnly))
        link->PostEditValue();
}
