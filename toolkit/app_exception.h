#pragma once
// What the application does with an exception that no window caught: the user reads its message.

#include <QString>
#include <exception>

// The text a user reads for an exception: a database error's message, or the standard text.
QString ExceptionMessage(const std::exception &error);
// Class name of an exception as a window names it in its messages ("EFIBInterBaseError").
QString ExceptionClassName(const std::exception &error);

// Shows the message of the exception being handled in an error box; an EAbort shows nothing.
// Call only inside a catch block.
void HandleCurrentException();

// The application's general error report, for what escaped every window: an error box with a heading and
// the message; an EAbort shows nothing. Call only inside a catch block.
void ReportApplicationError();
extern const QString ApplicationErrorHeading;
