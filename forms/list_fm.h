#pragma once
// A child window of one grid frame under a filter box: the dictionaries and catalogues. A descendant
// fills the box and hands over the frame's settings and its filter table; showing refreshes the frame,
// and a filter change refreshes it once the filter timer ticks.

#include "filter_table.h"
#include "fm_base.h"
#include "frame_settings.h"

class TFilterPanel;
class TGridFrame;

class TListFM : public TfmBase
{
    Q_OBJECT
public:
    // `formName` heads the frame's rights key and caption section; `frameName` ends them.
    TListFM(const QString &formName, const QString &frameName, TMainWindowLink *mainWindow = nullptr,
            QWidget *parent = nullptr);

    // Hidden while it holds no filter.
    TFilterPanel *gbFilter;
    TGridFrame *Frame;

    void FormShow(QObject *sender) override;
    void FillParameters(TFIBDataSet *dataSet);

protected:
    // The frame and FillParameters of `settings` are this window's; the filters' changes arm the timer.
    void Configure(TFrameSettings settings, const TFilterTable &filters = {});

private:
    TFrameSettings m_settings;
    TFilterTable m_filters;
};
