#include "desktop_shell.h"

#include <QDesktopServices>
#include <QRegularExpression>
#include <QUrl>

bool DesktopShell::Open(const QString &documentOrUrl)
{
    // A scheme of two letters or more; "C:" style drive letters stay file paths.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    const QUrl url = scheme.match(documentOrUrl).hasMatch() ? QUrl(documentOrUrl)
                                                             : QUrl::fromLocalFile(documentOrUrl);
    return QDesktopServices::openUrl(url);
}
