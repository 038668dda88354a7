#include "fm_base.h"
#include "filter_timer.h"

#include "app_exception.h"
#include "grid_frame.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QVBoxLayout>

// Colour 13303805 of the system's windows, stored as blue-green-red.
const QColor TfmBase::PanelColor(0xFD, 0xFF, 0xCA);

TfmBase::TfmBase(TMainWindowLink *mainWindow, QWidget *parent) : QWidget(parent), m_mainWindow(mainWindow)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    pnlMain = new QWidget(this);
    pnlMain->setObjectName(QStringLiteral("pnlMain"));
    pnlMain->setAutoFillBackground(true);
    QPalette palette = pnlMain->palette();
    palette.setColor(QPalette::Window, PanelColor);
    pnlMain->setPalette(palette);
    layout->addWidget(pnlMain);
    ActionList = new TActionList(this, QStringLiteral("ActionList"));
    tmrFilter = CreateFilterTimer(this, [this](QTimer *timer) { tmrFilterTimer(timer); });
}

bool TfmBase::IsMdiChild() const
{
    return qobject_cast<QMdiSubWindow *>(parentWidget()) != nullptr;
}

QMdiSubWindow *TfmBase::ShowIn(QMdiArea *area)
{
    QMdiSubWindow *sub = area->addSubWindow(this);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->showMaximized();
    return sub;
}

void TfmBase::FormCreate(QObject *)
{
}

void TfmBase::FormShow(QObject *)
{
}

void TfmBase::FormClose(QObject *, TCloseAction &action)
{
    if (!IsMdiChild())
        return;
    if (m_mainWindow)
        m_mainWindow->SendMessage(WMDestroyChild, action, 0);
    action = caFree;
}

void TfmBase::tmrFilterTimer(QObject *)
{
    tmrFilter->stop();
    RefreshFilterFrame(FilterFrame, tmrFilter);
}

void RefreshFilterFrame(TGridFrame *frame, QTimer *timer)
{
    if (!frame)
        return;
    frame->actRefresh->Execute();
    timer->stop();
}

void TfmBase::FilterChange(QObject *)
{
    if (!tmrFilter->isActive())
        tmrFilter->start();
}

void TfmBase::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (event->spontaneous())
        return;
    try {
        FormShow(this);
    } catch (...) {
        HandleCurrentException();
    }
}

void TfmBase::closeEvent(QCloseEvent *event)
{
    // A card works on its window's grid: the window stays until its card is closed.
    for (const TGridFrame *frame : findChildren<TGridFrame *>()) {
        if (frame->CardForm) {
            event->ignore();
            return;
        }
    }
    TCloseAction action = IsMdiChild() ? caMinimize : caHide;
    try {
        FormClose(this, action);
    } catch (...) {
        HandleCurrentException();
    }
    if (action == caNone) {
        event->ignore();
        return;
    }
    if (action == caFree) {
        setAttribute(Qt::WA_DeleteOnClose);
        if (QWidget *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
            sub->setAttribute(Qt::WA_DeleteOnClose);
    }
    event->accept();
}
