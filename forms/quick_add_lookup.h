#pragma once
// Lookups of a hand-laid card that take up a name their list lacks at once: the list's save procedure
// gets the lookup's present key and the typed name, and the list is read again. With a key already
// chosen the procedure's upsert renames that row instead of adding one. Also the exit handler that
// writes an editor's value into the row before a card saves.

#include <QList>
#include <QString>

class QWidget;
class TCustomDictFM;
class TFIBDataSet;

struct TQuickAddLookup
{
    // The box of the lookup, named like its field.
    QString Field;
    // "<stem>Edit" of the list: OLD_ID, name.
    QString SaveProc;
    // Closed and opened after the save.
    TFIBDataSet *List = nullptr;
};

// Hands each lookup its handler; a box without its editor is skipped. Run after the card made its editors.
void InstallQuickAdd(TCustomDictFM *card, const QList<TQuickAddLookup> &lookups);

// A lookup first takes up its typed text; then the editor's value goes into its field.
void PostEditValue(QWidget *editor);
