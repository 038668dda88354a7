#pragma once
// The child window of the multi-document main window: the base of journals and lists. Closing it
// frees it and tells the main window.

#include "actions.h"
#include "window_messages.h"

#include <QTimer>
#include <QWidget>

class QMdiArea;
class TGridFrame;
class QMdiSubWindow;

class TfmBase : public QWidget
{
    Q_OBJECT
public:
    // `mainWindow` gets the window's messages; it may be null for a window standing alone.
    explicit TfmBase(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);

    QWidget *pnlMain;
    TActionList *ActionList;
    // Off, 100 ms; its tick runs tmrFilterTimer.
    QTimer *tmrFilter;

    TMainWindowLink *MainWindow() const { return m_mainWindow; }
    // A child of the multi-document area, as opposed to a window standing alone.
    bool IsMdiChild() const;
    // Puts the window into the area, maximised and shown.
    QMdiSubWindow *ShowIn(QMdiArea *area);

    // Each descendant's FormCreate calls this first.
    virtual void FormCreate(QObject *sender);
    // Runs each time the window is shown.
    virtual void FormShow(QObject *sender);
    virtual void FormClose(QObject *sender, TCloseAction &action);
    // Switches the timer off and refreshes FilterFrame; descendants call it first.
    virtual void tmrFilterTimer(QObject *sender);
    // The frame that the window's filters feed, refreshed by the filter timer's tick.
    TGridFrame *FilterFrame = nullptr;
    // Any change of a filter control: arms the timer, unless it is armed already.
    void FilterChange(QObject *sender = nullptr);

    // The colour of the panels of every window.
    static const QColor PanelColor;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    TMainWindowLink *m_mainWindow;
};
