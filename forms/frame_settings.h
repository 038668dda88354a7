#pragma once
// What a window sets on each of its grid frames when it is created: title, dataset, procedure stem,
// card captions, the card it makes, and the actions its design switches off or hides. One table row per
// frame, so that a window with many frames holds no per-frame code.

#include "fib_dataset.h"

#include <QList>
#include <QString>
#include <functional>

class QWidget;
class TCustomDictFM;
class TDBGridView;
class TGridFrame;

// Actions of a frame, as flags.
enum TFrameAction { faNone = 0, faAdd = 1, faEdit = 2, faDel = 4, faDblClick = 8 };

// Makes the card of a frame: the frame's view, the frame's name and the save procedure.
using TCardMaker = std::function<TCustomDictFM *(TDBGridView *view, const QString &frameName, const QString &procName)>;

template <class Card>
TCardMaker CardOf()
{
    return [](TDBGridView *view, const QString &frameName, const QString &procName) -> TCustomDictFM * {
        return new Card(view, frameName, procName);
    };
}

struct TFrameSettings
{
    TGridFrame *Frame = nullptr;
    // The group caption, which is also the frame's title in the rights catalogue.
    QString Title;
    TFIBDataSet *DataSet = nullptr;
    QString ProcPrefix;
    // Null: the frame has no card, and its OnCreateCard only clears CardForm.
    TCardMaker MakeCard;
    QString SaveProc;
    QString AddCaption;
    QString EditCaption;
    QString DelPrompt;
    // Off from the start; rights never switch an action on again.
    int Disabled = faNone;
    int Hidden = faNone;
    // Binds the window's filters before each opening; null for a frame without filters.
    std::function<void(TFIBDataSet *dataSet)> FillParameters;

    void Apply() const;
};

// The frames of one window in the order in which the window refreshes them on show.
class TFrameTable : public QList<TFrameSettings>
{
public:
    using QList<TFrameSettings>::QList;
    void Apply() const;
    // Runs each frame's actRefresh.
    void Refresh() const;
};
