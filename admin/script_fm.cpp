#include "script_fm.h"

#include "app_exception.h"
#include "data_dm.h"
#include "db_grid.h"
#include "deploy_scripts.h"
#include "fib_errors.h"
#include "grid_view.h"
#include "ui_script_fm.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>

namespace {

// The override file when it exists; the built-in scripts are not shown, so the pane stays empty.
QString scriptText(const QString &folder, DeployScript script)
{
    QStringList lines;
    const QString path = folder + QLatin1Char('/') + OverrideFileName(script);
    if (!QFileInfo::exists(path) || !ReadOverrideFile(path, lines))
        return QString();
    return lines.join(QLatin1Char('\n'));
}

} // namespace

TScriptFM::TScriptFM(TMainWindowLink *mainWindow, QWidget *parent)
    : TfmBase(mainWindow, parent), ui(std::make_unique<Ui::ScriptFM>())
{
    setObjectName(QStringLiteral("ScriptFM"));
    ui->setupUi(pnlMain);
    PageControl1 = ui->PageControl1;
    TabSheet1 = ui->TabSheet1;
    TabSheet2 = ui->TabSheet2;
    gbTables = ui->gbTables;
    mTables = ui->mTables;
    cxButton1 = ui->cxButton1;
    gbProcedures = ui->gbProcedures;
    mProcedures = ui->mProcedures;
    cxButton2 = ui->cxButton2;
    Memo1 = ui->Memo1;
    Button1 = ui->Button1;
    grScript = ui->grScript;
    GridViewScript = grScript->View();
    GridViewScript->setObjectName(QStringLiteral("GridViewScript"));

    pScript = new TpFIBDataSet(this);
    pScript->setObjectName(QStringLiteral("pScript"));
    pScript->SetDatabase(&DataDM->pFIBDatabaseMain);
    pScript->SetTransaction(&DataDM->pFIBTransaction1);
    dsScript = new TDataSource(this, pScript);
    dsScript->setObjectName(QStringLiteral("dsScript"));
    GridViewScript->SetDataSource(dsScript);

    connect(cxButton1, &QPushButton::clicked, this, [this] { Guarded([this] { cxButton1Click(cxButton1); }); });
    connect(cxButton2, &QPushButton::clicked, this, [this] { Guarded([this] { cxButton2Click(cxButton2); }); });
    connect(Button1, &QPushButton::clicked, this, [this] { Guarded([this] { Button1Click(Button1); }); });
    Memo1->installEventFilter(this);
    ScriptFolder = QCoreApplication::applicationDirPath();
    resize(1000, 640);
    FormCreate(this);
}

TScriptFM::~TScriptFM() = default;

void TScriptFM::Guarded(const std::function<void()> &handler)
{
    try {
        handler();
    } catch (...) {
        HandleCurrentException();
    }
}

void TScriptFM::FormShow(QObject *sender)
{
    TfmBase::FormShow(sender);
    const int tables = window()->width() * 40 / 100;
    ui->splScripts->setSizes({tables, qMax(1, ui->splScripts->width() - tables)});
    ScriptFolder = QCoreApplication::applicationDirPath();
    mTables->setPlainText(scriptText(ScriptFolder, DeployScript::Tables));
    mProcedures->setPlainText(scriptText(ScriptFolder, DeployScript::Procedures));
}

void TScriptFM::SaveScript(QPlainTextEdit *memo, const QString &fileName)
{
    const QString path = ScriptFolder + QLatin1Char('/') + fileName;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(memo->toPlainText().toUtf8()) < 0)
        throw EDatabaseError(QStringLiteral("Не удалось записать файл %1").arg(QDir::toNativeSeparators(path)));
}

void TScriptFM::cxButton1Click(QObject *)
{
    SaveScript(mTables, OverrideFileName(DeployScript::Tables));
}

void TScriptFM::cxButton2Click(QObject *)
{
    SaveScript(mProcedures, OverrideFileName(DeployScript::Procedures));
}

void TScriptFM::Button1Click(QObject *)
{
    pScript->Close();
    pScript->SetSelectSQL(Memo1->toPlainText());
    pScript->Open();
    while (GridViewScript->ColumnCount() > 0)
        GridViewScript->DeleteColumn(GridViewScript->Columns(0));
    for (int i = 0; i < pScript->FieldCount(); ++i)
        GridViewScript->CreateColumn(pScript->Fields(i)->FieldName());
}

bool TScriptFM::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Memo1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Button1->click();
            return true;
        }
    }
    return TfmBase::eventFilter(watched, event);
}
