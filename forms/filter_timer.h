#pragma once
// The timer that gathers quick changes of filter fields into one refresh.

#include "app_exception.h"

#include <QTimer>
#include <functional>

// Off, 100 ms; a tick runs `onTick`, and a failure in it goes to the application's handler.
inline QTimer *CreateFilterTimer(QObject *owner, const std::function<void(QTimer *)> &onTick)
{
    auto *timer = new QTimer(owner);
    timer->setObjectName(QStringLiteral("tmrFilter"));
    timer->setInterval(100);
    QObject::connect(timer, &QTimer::timeout, owner, [timer, onTick] {
        try {
            onTick(timer);
        } catch (...) {
            timer->stop();
            HandleCurrentException();
        }
    });
    return timer;
}

class TGridFrame;
// The tick's refresh of a window's filtered frame, if it has one; the timer is off again afterwards.
void RefreshFilterFrame(TGridFrame *frame, QTimer *timer);
