#pragma once
// Messages between child windows and the main window, under the numbers the system gives them.

#include <QtGlobal>

constexpr int WM_USER_FIRST = 1024;
// A child window closed; first parameter its close action.
constexpr int WMDestroyChild = WM_USER_FIRST + 2; // 1026
// The vehicles window asks for the orders of a vehicle; first parameter the filter record.
constexpr int WMShowOrderAuto = WM_USER_FIRST + 3; // 1027

// What a child knows of the main window: where to send its messages. The send waits for the handler.
class TMainWindowLink
{
public:
    virtual ~TMainWindowLink() = default;
    virtual qintptr SendMessage(int message, qintptr wParam, qintptr lParam) = 0;
};

// What happens to a window once it is closed.
enum TCloseAction { caNone = 0, caHide = 1, caFree = 2, caMinimize = 3 };
