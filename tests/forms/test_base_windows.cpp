// Child windows and modal dialogs: modal results, closing, the filter timer.

#include "fm_base.h"
#include "fm_dialog.h"
#include "frame_fixture.h"
#include "modal_driver.h"
#include "scripted_dialogs.h"

#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>

namespace {

TEST(DialogWindow, ExecuteIsTrueForOk)
{
    TfmDialog dialog;
    ModalDriver driver;
    driver.Then([&](QWidget *modal) {
        EXPECT_EQ(modal, &dialog);
        dialog.AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialog.Execute());
    EXPECT_EQ(dialog.ModalResult(), mrOk);
    EXPECT_FALSE(dialog.isVisible());
}

TEST(DialogWindow, ExecuteIsFalseForTheCloseBoxAndForEscape)
{
    TfmDialog dialog;
    ModalDriver driver;
    driver.Then([&](QWidget *) { dialog.close(); });
    EXPECT_FALSE(dialog.Execute());
    EXPECT_EQ(dialog.ModalResult(), mrCancel);

    driver.Then([&](QWidget *) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(dialog.Execute());
    EXPECT_EQ(dialog.ModalResult(), mrCancel);
}

TEST(DialogWindow, ButtonsCarryTheirCaptionsAndResults)
{
    TfmDialog dialog;
    EXPECT_EQ(dialog.actOK->text(), "Принять");
    EXPECT_EQ(dialog.actCancel->text(), "Отмена");
    EXPECT_EQ(dialog.AdvGlowButton1->ModalResult, mrOk);
    EXPECT_EQ(dialog.AdvGlowButton2->ModalResult, mrCancel);
    EXPECT_TRUE(dialog.AdvGlowButton1->isDefault());
    EXPECT_EQ(dialog.Panel1->height(), 54);
    EXPECT_EQ(dialog.tmrFilter->interval(), 100);
    EXPECT_FALSE(dialog.tmrFilter->isActive());
}

// A dialog that refuses to close until told.
class StubbornDialog : public TfmDialog
{
public:
    bool mayClose = false;
    int queries = 0;
    void FormCloseQuery(QObject *, bool &canClose) override
    {
        ++queries;
        if (!mayClose)
            SetModalResult(mrNone);
        canClose = true;
    }
};

TEST(DialogWindow, ClearingTheModalResultKeepsTheDialogOpen)
{
    StubbornDialog dialog;
    bool stillOpen = false;
    ModalDriver driver;
    driver.Then([&](QWidget *) { dialog.AdvGlowButton1->click(); })
        .Then([&](QWidget *) {
            stillOpen = dialog.isVisible();
            dialog.mayClose = true;
            dialog.AdvGlowButton1->click();
        });
    EXPECT_TRUE(dialog.Execute());
    EXPECT_TRUE(stillOpen);
    EXPECT_EQ(dialog.queries, 2);
}

class RecordingMainWindow : public TMainWindowLink
{
public:
    struct Message
    {
        int message;
        qintptr wParam, lParam;
    };
    QList<Message> Messages;
    qintptr SendMessage(int message, qintptr wParam, qintptr lParam) override
    {
        Messages.append({message, wParam, lParam});
        return 0;
    }
};

TEST(ChildWindow, ClosingAChildFreesItAndTellsTheMainWindow)
{
    RecordingMainWindow main;
    QMdiArea area;
    area.show();
    QPointer<TfmBase> child = new TfmBase(&main);
    child->setObjectName("ChildFM");
    QPointer<QMdiSubWindow> sub = child->ShowIn(&area);
    EXPECT_TRUE(child->IsMdiChild());
    EXPECT_TRUE(sub->isMaximized());
    sub->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(child.isNull());
    EXPECT_TRUE(sub.isNull());
    ASSERT_EQ(main.Messages.size(), 1);
    EXPECT_EQ(main.Messages[0].message, 1026);
    EXPECT_EQ(main.Messages[0].wParam, caMinimize);
    EXPECT_EQ(main.Messages[0].lParam, 0);
}

TEST(ChildWindow, AWindowStandingAloneIsOnlyHidden)
{
    RecordingMainWindow main;
    QPointer<TfmBase> window = new TfmBase(&main);
    window->show();
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(window.isNull());
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(main.Messages.isEmpty());
    delete window;
}

// A journal with one frame and a filter: the timer's tick refreshes the frame.
class FilterJournalFM : public TfmBase
{
public:
    FilterJournalFM()
    {
        setObjectName("FilterJournalFM");
        frame = new TGridFrame(pnlMain, "frmJournal");
        frame->RightsOff = true;
        frame->OnFillParameters = [this](TFIBDataSet *) { ++refreshes; };
    }
    void tmrFilterTimer(QObject *sender) override
    {
        TfmBase::tmrFilterTimer(sender);
        frame->actRefresh->Execute();
        tmrFilter->stop();
    }
    TGridFrame *frame;
    int refreshes = 0;
};

class FilterTest : public FormsTest
{
};

TEST_F(FilterTest, SeveralChangesWithinTheIntervalMakeOneRefresh)
{
    FilterJournalFM journal;
    journal.frame->DS->SetDataSet(&dm->spRolesOpen);
    journal.resize(600, 400);
    journal.show();
    for (int i = 0; i < 5; ++i) {
        journal.FilterChange();
        QTest::qWait(10);
    }
    EXPECT_EQ(journal.refreshes, 0);
    QElapsedTimer clock;
    clock.start();
    while (journal.refreshes == 0 && clock.elapsed() < 2000)
        QTest::qWait(5);
    QTest::qWait(250);
    EXPECT_EQ(journal.refreshes, 1);
    EXPECT_FALSE(journal.tmrFilter->isActive());
    EXPECT_EQ(journal.frame->GridView->RowCount(), 3);

    journal.FilterChange();
    QTest::qWait(250);
    EXPECT_EQ(journal.refreshes, 2);
}

TEST_F(FilterTest, AChangeWhileTheTimerRunsDoesNotRestartIt)
{
    FilterJournalFM journal;
    journal.FilterChange();
    QTest::qWait(60);
    journal.FilterChange();
    EXPECT_TRUE(journal.tmrFilter->isActive());
    EXPECT_LT(journal.tmrFilter->remainingTime(), 70);
}

TEST_F(FilterTest, DialogsHaveTheSameTimer)
{
    TfmDialog dialog;
    int ticks = 0;
    QObject::connect(dialog.tmrFilter, &QTimer::timeout, [&] { ++ticks; });
    dialog.FilterChange();
    dialog.FilterChange();
    QTest::qWait(250);
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(dialog.tmrFilter->isActive());
}

} // namespace
