#pragma once
// Acts on modal windows while their loop runs: each queued step runs once on the modal window that is
// active at that moment, a few milliseconds after the previous one. A modal window left with no step
// is cancelled after a while, and that counts as a failure.

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QQueue>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <functional>

class ModalDriver : public QObject
{
public:
    using Step = std::function<void(QWidget *modal)>;

    explicit ModalDriver(int idleLimitMs = 5000) : m_idleLimitMs(idleLimitMs)
    {
        m_timer.setInterval(10);
        connect(&m_timer, &QTimer::timeout, this, [this] { Tick(); });
        m_timer.start();
    }

    ModalDriver &Then(Step step)
    {
        m_steps.enqueue(std::move(step));
        return *this;
    }
    int Remaining() const { return int(m_steps.size()); }
    int Ran() const { return m_ran; }
    // Texts of what went wrong: modal windows that nobody handled.
    QStringList Failures;

private:
    void Tick()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal) {
            m_idle.invalidate();
            return;
        }
        if (!m_steps.isEmpty()) {
            // A window closed by the previous step may still be active for a moment.
            if (m_sinceStep.isValid() && m_sinceStep.elapsed() < StepPauseMs)
                return;
            m_sinceStep.start();
            m_idle.invalidate();
            Step step = m_steps.dequeue();
            ++m_ran;
            step(modal);
            return;
        }
        if (!m_idle.isValid())
            m_idle.start();
        else if (m_idle.elapsed() > m_idleLimitMs) {
            Failures << QStringLiteral("modal window left open: ") + modal->objectName();
            modal->close();
            m_idle.invalidate();
        }
    }

    static constexpr int StepPauseMs = 100;
    QTimer m_timer;
    QElapsedTimer m_sinceStep;
    QQueue<Step> m_steps;
    QElapsedTimer m_idle;
    int m_idleLimitMs;
    int m_ran = 0;
};
