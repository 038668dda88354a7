#include "options_fm.h"

#include "common.h"
#include "data_dm.h"
#include "ui_options_fm.h"

#include <QCheckBox>

TOptionsFM *OptionsFM = nullptr;

TOptionsFM::TOptionsFM(QWidget *parent) : TfmDialog(0, parent), ui(std::make_unique<Ui::OptionsFM>())
{
    setObjectName(QStringLiteral("OptionsFM"));
    // The caption is the design-time name; it has never been given another.
    setWindowTitle(QStringLiteral("OptionsFM"));
    ui->setupUi(pnlMain);
    gbNumeric = ui->gbNumeric;
    edReportNum = ui->edReportNum;
    edOrderNum = ui->edOrderNum;
    edOrderPostfix = ui->edOrderPostfix;
    cxGroupBox1 = ui->cxGroupBox1;
    cxTextEdit1 = ui->cxTextEdit1;
    cxTextEdit2 = ui->cxTextEdit2;
    cxTextEdit3 = ui->cxTextEdit3;
    cbAutoBackup = new QCheckBox(QStringLiteral("Резервная копия базы данных при каждом выходе из программы"), pnlMain);
    cbAutoBackup->setObjectName(QStringLiteral("cbAutoBackup"));
    ui->layMain->addWidget(cbAutoBackup);
    actOK->OnExecute = [this](QObject *sender) { actOKExecute(sender); };
    actCancel->OnExecute = [this](QObject *sender) { actCancelExecute(sender); };
    resize(420, 310);
}

TOptionsFM::~TOptionsFM() = default;

QList<TOptionsFM::Setting> TOptionsFM::Settings() const
{
    return {{edReportNum, QStringLiteral("REPORTSNUM")},
            {edOrderNum, QStringLiteral("ORDERSNUM")},
            {edOrderPostfix, QStringLiteral("ORDERSPOSTFIX")}};
}

void TOptionsFM::FormShow(QObject *sender)
{
    TfmDialog::FormShow(sender);
    const TCurrencyWords &words = CurrencyWords();
    cxTextEdit1->setText(words.Val1);
    cxTextEdit2->setText(words.Val2);
    cxTextEdit3->setText(words.Val3);
    DataDM->tConfig.Close();
    DataDM->tConfig.Open();
    for (const Setting &setting : Settings())
        setting.editor->setText(DataDM->GetConfigString(setting.key));
    cbAutoBackup->setChecked(TDataDM::AutoBackupEnabled());
}

void TOptionsFM::actOKExecute(QObject *)
{
    for (const Setting &setting : Settings())
        DataDM->SetConfigString(setting.key, setting.editor->text());
    TDataDM::SetAutoBackupEnabled(cbAutoBackup->isChecked());
}

void TOptionsFM::actCancelExecute(QObject *)
{
}

void TOptionsFM::FormClose(QObject *sender, TCloseAction &action)
{
    TfmDialog::FormClose(sender, action);
    // On any close, Cancel included: only the numbering settings wait for OK.
    TCurrencyWords &words = CurrencyWords();
    words.Val1 = cxTextEdit1->text();
    words.Val2 = cxTextEdit2->text();
    words.Val3 = cxTextEdit3->text();
}
