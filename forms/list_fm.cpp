#include "list_fm.h"

#include "filter_panel.h"
#include "grid_frame.h"

#include <QVBoxLayout>

TListFM::TListFM(const QString &formName, const QString &frameName, TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent)
{
    setObjectName(formName);
    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(4, 4, 4, 4);
    gbFilter = new TFilterPanel(pnlMain);
    layout->addWidget(gbFilter);
    Frame = new TGridFrame(pnlMain, frameName);
    layout->addWidget(Frame, 1);
    resize(1000, 640);
}

void TListFM::Configure(TFrameSettings settings, const TFilterTable &filters)
{
    m_filters = filters;
    settings.Frame = Frame;
    if (!m_filters.isEmpty())
        settings.FillParameters = [this](TFIBDataSet *dataSet) { FillParameters(dataSet); };
    m_settings = settings;
    m_settings.Apply();
    setWindowTitle(settings.Title);
    gbFilter->setVisible(!m_filters.isEmpty());
    m_filters.Watch([this] { FilterChange(); });
    FilterFrame = Frame;
}

void TListFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    Frame->actRefresh->Execute();
}

void TListFM::FillParameters(TFIBDataSet *dataSet)
{
    m_filters.Fill(dataSet);
}
