#pragma once
// The about box: the program's name, the version and date of the executable, and the vendor's site,
// which opens in the browser on a click.

#include "fm_dialog.h"

#include <QDateTime>
#include <memory>

class QLabel;
namespace Ui {
class AboutFM;
}

class TAboutFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TAboutFM(QWidget *parent = nullptr);
    ~TAboutFM() override;

    QLabel *cxLabel1;
    QLabel *LabelVersion;
    QLabel *cxLabel2;

    void FormShow(QObject *sender) override;
    void cxLabel2Click(QObject *sender);
    void actCancelExecute(QObject *sender);

    // "Версия a.b.c.d от <date>", the date in the short format of the process's locale; an unreadable
    // file date counts as day 0 (30.12.1899).
    static QString VersionText(const QString &fileVersion, const QDateTime &fileDate);
    // The four numbers of the executable's version.
    static QString FileVersion();

    static const QString SiteName;
    static const QString SiteUrl;

private:
    std::unique_ptr<Ui::AboutFM> ui;
};
