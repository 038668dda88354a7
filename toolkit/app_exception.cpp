#include "app_exception.h"

#include "dialogs.h"
#include "fib_errors.h"
#include "spreadsheet.h"
#include "word_processor.h"

QString ExceptionMessage(const std::exception &error)
{
    if (auto *db = dynamic_cast<const EDatabaseError *>(&error))
        return db->Message();
    return QString::fromUtf8(error.what());
}

QString ExceptionClassName(const std::exception &error)
{
    if (dynamic_cast<const EFIBInterBaseError *>(&error))
        return QStringLiteral("EFIBInterBaseError");
    if (dynamic_cast<const EFIBClientError *>(&error))
        return QStringLiteral("EFIBClientError");
    if (dynamic_cast<const EFIBError *>(&error))
        return QStringLiteral("EFIBError");
    if (dynamic_cast<const EDatabaseError *>(&error))
        return QStringLiteral("EDatabaseError");
    if (dynamic_cast<const EAbort *>(&error))
        return QStringLiteral("EAbort");
    if (dynamic_cast<const EWordProcessorError *>(&error))
        return QStringLiteral("EWordProcessorError");
    if (dynamic_cast<const ESpreadsheetError *>(&error))
        return QStringLiteral("ESpreadsheetError");
    return QStringLiteral("Exception");
}

void HandleCurrentException()
{
    try {
        throw;
    } catch (const EAbort &) {
    } catch (const std::exception &e) {
        Dialogs::Current().Show(Dialogs::Error, ExceptionMessage(e));
    } catch (...) {
        Dialogs::Current().Show(Dialogs::Error, QStringLiteral("Unknown exception"));
    }
}

const QString ApplicationErrorHeading = QStringLiteral("Ошибка в работе программы.\r\nТекст ошибки:\r\n");

void ReportApplicationError()
{
    try {
        throw;
    } catch (const EAbort &) {
    } catch (const std::exception &e) {
        Dialogs::Current().Show(Dialogs::Error, ApplicationErrorHeading + ExceptionMessage(e));
    } catch (...) {
        Dialogs::Current().Show(Dialogs::Error, ApplicationErrorHeading + QStringLiteral("Неизвестная ошибка"));
    }
}
