#pragma once
// The look for a newer version on the vendor's site, once per installation: a marker file beside the
// executable records that it was done, whatever its outcome.

#include <QString>
#include <functional>

class TUpdateCheck
{
public:
    TUpdateCheck();

    // Scheme and host of the vendor's site. The download asks for a secure connection, which turns the
    // "http" in front into "https".
    static const QString VendorSite;

    QString Site = VendorSite;
    // "chkupd" in the folder of the executable.
    QString MarkerPath;
    // One POST; the body of the reply, or empty on any failure.
    std::function<QString(const QString &url, bool secure)> Download;

    QString CheckUrl() const;
    QString PageUrl() const;
    // Any stable opaque text that tells this machine from others.
    static QString MachineId();

    // When the marker is missing: creates it, asks the site and, on the reply "update", opens the update
    // page through the shell. True when the site was asked. Never raises.
    bool Run();
};
