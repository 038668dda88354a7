#include "frame_settings.h"

#include "custom_dict_fm.h"
#include "grid_frame.h"

#include <QGroupBox>

void TFrameSettings::Apply() const
{
    TGridFrame *frame = Frame;
    frame->gbGrid->setTitle(Title);
    frame->DS->SetDataSet(DataSet);
    frame->ProcPrefix = ProcPrefix;
    frame->AddCaption = AddCaption;
    frame->EditCaption = EditCaption;
    frame->DelPrompt = DelPrompt;
    const struct
    {
        TFrameAction flag;
        TAction *action;
    } actions[] = {{faAdd, frame->actAdd}, {faEdit, frame->actEdit}, {faDel, frame->actDel},
                   {faDblClick, frame->actDblClick}};
    for (const auto &entry : actions) {
        if (Disabled & entry.flag)
            entry.action->setEnabled(false);
        if (Hidden & entry.flag)
            entry.action->setVisible(false);
    }
    if (FillParameters)
        frame->OnFillParameters = FillParameters;
    const TCardMaker make = MakeCard;
    const QString proc = SaveProc;
    frame->OnCreateCard = [frame, make, proc] {
        frame->CardForm = make ? make(frame->GridView, frame->objectName(), proc) : nullptr;
    };
}

void TFrameTable::Apply() const
{
    for (const TFrameSettings &frame : *this)
        frame.Apply();
}

void TFrameTable::Refresh() const
{
    for (const TFrameSettings &frame : *this)
        frame.Frame->actRefresh->Execute();
}
