#include "about_fm.h"

#include "shell.h"
#include "ui_about_fm.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

#ifndef KELVARION_FILE_VERSION
#define KELVARION_FILE_VERSION "0.0.0.0"
#endif

const QString TAboutFM::SiteName = QStringLiteral("www.kelvarion.ru");
const QString TAboutFM::SiteUrl = QStringLiteral("https://www.kelvarion.ru/");

TAboutFM::TAboutFM(QWidget *parent) : TfmDialog(0, parent), ui(std::make_unique<Ui::AboutFM>())
{
    setObjectName(QStringLiteral("AboutFM"));
    setWindowTitle(QStringLiteral("О программе"));
    ui->setupUi(pnlMain);
    cxLabel1 = ui->cxLabel1;
    LabelVersion = ui->LabelVersion;
    cxLabel2 = ui->cxLabel2;
    cxLabel1->setText(QStringLiteral("Kelvarion \nПрограмма управления автосервисом"));
    cxLabel2->setText(QStringLiteral("<a href=\"%1\">%2</a>").arg(SiteUrl, SiteName));
    cxLabel2->setOpenExternalLinks(false);
    connect(cxLabel2, &QLabel::linkActivated, this, [this] { cxLabel2Click(cxLabel2); });
    actOK->setVisible(false);
    actCancel->setText(QStringLiteral("Закрыть"));
    actCancel->OnExecute = [this](QObject *sender) { actCancelExecute(sender); };
    resize(400, 240);
}

TAboutFM::~TAboutFM() = default;

QString TAboutFM::FileVersion()
{
    return QStringLiteral(KELVARION_FILE_VERSION);
}

QString TAboutFM::VersionText(const QString &fileVersion, const QDateTime &fileDate)
{
    const QDate date = fileDate.isValid() ? fileDate.date() : QDate(1899, 12, 30);
    return QStringLiteral("Версия ") + fileVersion + QStringLiteral(" от ") + QLocale().toString(date, QLocale::ShortFormat);
}

void TAboutFM::FormShow(QObject *sender)
{
    TfmDialog::FormShow(sender);
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    LabelVersion->setText(VersionText(FileVersion(), executable.exists() ? executable.lastModified() : QDateTime()));
}

void TAboutFM::cxLabel2Click(QObject *)
{
    Shell::Current().Open(SiteUrl);
}

void TAboutFM::actCancelExecute(QObject *)
{
}
