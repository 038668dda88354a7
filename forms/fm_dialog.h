#pragma once
// Free-standing windows: TfmBaseSingleForm, which can also run modally with a modal result, and
// TfmDialog, the modal window with the OK and cancel bar, the base of login, options and all cards.

#include "actions.h"
#include "window_messages.h"

#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <exception>

class QEventLoop;
class QScrollArea;
class TGridFrame;

// Modal results of the system's windows.
enum TModalResult { mrNone = 0, mrOk = 1, mrCancel = 2 };

class TfmBaseSingleForm : public QDialog
{
    Q_OBJECT
public:
    // `parameter` is stored as given; all callers pass 0.
    explicit TfmBaseSingleForm(int parameter = 0, QWidget *parent = nullptr);

    QWidget *pnlMain;
    TActionList *ActionList;
    int Parameter;

    // Runs the window modally until a modal result other than 0 survives the close query; returns it.
    // An exception of the window's show passes on to the caller.
    int ShowModal();
    bool IsModalRunning() const { return m_loop != nullptr; }
    int ModalResult() const { return m_modalResult; }
    // A result other than 0 asks a modal window to close once the present event is handled.
    void SetModalResult(int result);

    virtual void FormShow(QObject *sender);
    // Clearing the modal result or `canClose` keeps the window open.
    virtual void FormCloseQuery(QObject *sender, bool &canClose);
    virtual void FormClose(QObject *sender, TCloseAction &action);

    // Keeps the window within the available area of its screen whatever the lengths of its texts: a
    // window too large for it gets its main panel in a scroll area, the button bar staying in sight.
    // Runs after each FormShow.
    void FitToScreen();
    // The scroll area of the main panel, once the window had to be made smaller than it; else null.
    QScrollArea *ScrollBox() const { return m_scrollBox; }

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    // Escape: the cancel button, when the window has one.
    void reject() override;
    // Ends a modal run through the modal result, never around it.
    void done(int result) override;
    QPushButton *CancelButton = nullptr;

private:
    // The close of a modal window as the modal result asks it; true when it closed.
    bool CloseModal();

    int m_modalResult = mrNone;
    QEventLoop *m_loop = nullptr;
    QScrollArea *m_scrollBox = nullptr;
    bool m_checkPending = false;
    std::exception_ptr m_showError;
};

// A button that sets the modal result of its window and then executes its action.
class TModalButton : public QPushButton
{
    Q_OBJECT
public:
    TModalButton(TfmBaseSingleForm *form, const QString &name, int modalResult, TAction *action);
    int ModalResult;

private:
    void Clicked();
    TfmBaseSingleForm *m_form;
    TAction *m_action;
};

class TfmDialog : public TfmBaseSingleForm
{
    Q_OBJECT
public:
    explicit TfmDialog(int parameter = 0, QWidget *parent = nullptr);

    QWidget *Panel1;
    TAction *actOK;
    TAction *actCancel;
    TModalButton *AdvGlowButton1; // OK, the default button
    TModalButton *AdvGlowButton2; // cancel
    // Off, 100 ms; a descendant with filter fields handles its tick.
    QTimer *tmrFilter;

    // Shows modally; true for the modal result OK.
    virtual bool Execute();
    // Any change of a filter control: arms the timer, unless it is armed already.
    void FilterChange(QObject *sender = nullptr);
    // Switches the timer off and refreshes FilterFrame.
    virtual void tmrFilterTimer(QObject *sender);
    // The frame that the dialog's filters feed, refreshed by the filter timer's tick.
    TGridFrame *FilterFrame = nullptr;
};
