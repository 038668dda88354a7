#pragma once
// The developer's window, reachable with "TRACE" only: the texts of the two deployment scripts, saved
// as the override files beside the executable that a new database is built from, and a query tool that
// shows the rows of one select.

#include "fm_base.h"

#include "fib_dataset.h"
#include "fib_datasource.h"

#include <memory>

class QGroupBox;
class QPlainTextEdit;
class QPushButton;
class QSplitter;
class QTabWidget;
class TDBGrid;
class TDBGridView;
namespace Ui {
class ScriptFM;
}

class TScriptFM : public TfmBase
{
    Q_OBJECT
public:
    explicit TScriptFM(TMainWindowLink *mainWindow = nullptr, QWidget *parent = nullptr);
    ~TScriptFM() override;

    QTabWidget *PageControl1;
    QWidget *TabSheet1;
    QWidget *TabSheet2;
    QGroupBox *gbTables;
    QPlainTextEdit *mTables;
    QPushButton *cxButton1;
    QGroupBox *gbProcedures;
    QPlainTextEdit *mProcedures;
    QPushButton *cxButton2;
    QPlainTextEdit *Memo1;
    QPushButton *Button1;
    TDBGrid *grScript;
    TDBGridView *GridViewScript;
    TDataSource *dsScript;
    TpFIBDataSet *pScript;

    // The folder of the executable, noted at show: where the override files lie.
    QString ScriptFolder;

    // Loads the override files, or the built-in scripts where there are none.
    void FormShow(QObject *sender) override;
    void cxButton1Click(QObject *sender);
    void cxButton2Click(QObject *sender);
    // Runs the select of Memo1 and shows its rows with a column per field.
    void Button1Click(QObject *sender);

protected:
    // Enter in Memo1 runs the statement instead of breaking the line.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void SaveScript(QPlainTextEdit *memo, const QString &fileName);
    // Runs a handler of a control; what it raises is shown by the application's handler.
    void Guarded(const std::function<void()> &handler);

    std::unique_ptr<Ui::ScriptFM> ui;
};
