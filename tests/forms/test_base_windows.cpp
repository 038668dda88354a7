// Child windows and modal dialogs: modal results, closing, the filter timer.

#include "fm_base.h"
#include "fm_dialog.h"
#include "frame_fixture.h"

#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTest>

namespace {

using BaseWindows = FormsTest;

class RecordingMainWindow : public TMainWindowLink
{
public:
    QList<QList<qintptr>> Messages;
    qintptr SendMessage(int message, qintptr wParam, qintptr lParam) override
    {
        Messages.append(QList<qintptr>{message, wParam, lParam});
        return 0;
    }
};

TEST_F(BaseWindows, ExecuteIsTrueForOkOnlyClosingAChildFreesItAndSeveralFilterChangesWithinTheIntervalMakeOneRefresh)
{
    TfmDialog dialog;
    ModalDriver driver;
    const struct { std::function<void()> close; bool result; } table[] = {
        {[&] { dialog.AdvGlowButton1->click(); }, true}, {[&] { dialog.close(); }, false},
        {[&] { QTest::keyClick(&dialog, Qt::Key_Escape); }, false}};
    for (const auto &row : table) {
        driver.Then([&](QWidget *modal) {
            EXPECT_EQ(modal, &dialog);
            row.close();
        });
        EXPECT_EQ(dialog.Execute(), row.result);
        EXPECT_EQ(dialog.ModalResult(), row.result ? mrOk : mrCancel);
        EXPECT_FALSE(dialog.isVisible());
    }

    // Closing a child frees it and tells the main window; a window alone is only hidden.
    RecordingMainWindow main;
    QMdiArea area;
    area.show();
    QPointer<TfmBase> child = new TfmBase(&main);
    QPointer<QMdiSubWindow> sub = child->ShowIn(&area);
    EXPECT_TRUE(child->IsMdiChild());
    EXPECT_TRUE(sub->isMaximized());
    sub->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(child.isNull());
    EXPECT_TRUE(sub.isNull());
    EXPECT_EQ(main.Messages, QList<QList<qintptr>>({{1026, caMinimize, 0}}));

    QPointer<TfmBase> window = new TfmBase(&main);
    window->show();
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(window.isNull());
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(main.Messages.size(), 1);
    delete window;

    // Several filter changes within the interval make one refresh.
    // A journal whose frame is refreshed on the timer's tick.
    TfmBase journal;
    journal.setObjectName("FilterJournalFM");
    auto *frame = new TGridFrame(journal.pnlMain, "frmJournal");
    frame->RightsOff = true;
    frame->DS->SetDataSet(&dm->spRolesOpen);
    int refreshes = 0;
    frame->OnFillParameters = [&](TFIBDataSet *) { ++refreshes; };
    QObject::connect(journal.tmrFilter, &QTimer::timeout, frame, [frame] { frame->actRefresh->Execute(); });
    journal.resize(600, 400);
    journal.show();
    for (int i = 0; i < 5; ++i) {
        journal.FilterChange();
        QTest::qWait(10);
    }
    // A change while the timer runs does not restart it.
    EXPECT_TRUE(journal.tmrFilter->isActive());
    EXPECT_LT(journal.tmrFilter->remainingTime(), 70);
    EXPECT_EQ(refreshes, 0);
    QElapsedTimer clock;
    clock.start();
    while (refreshes == 0 && clock.elapsed() < 2000)
        QTest::qWait(5);
    QTest::qWait(250);
    EXPECT_EQ(refreshes, 1);
    EXPECT_FALSE(journal.tmrFilter->isActive());
    EXPECT_EQ(frame->GridView->RowCount(), 3);
    journal.FilterChange();
    QTest::qWait(250);
    EXPECT_EQ(refreshes, 2);

    // Dialogs have the same timer.
    int ticks = 0;
    QObject::connect(dialog.tmrFilter, &QTimer::timeout, [&] { ++ticks; });
    dialog.FilterChange();
    dialog.FilterChange();
    QTest::qWait(250);
    EXPECT_EQ(ticks, 1);
    EXPECT_FALSE(dialog.tmrFilter->isActive());
}

} // namespace
