#pragma once
// The program's options: the numbering settings of CONFIG and the three currency marks that the main
// window keeps. OK stores both; Cancel leaves both as they were.

#include "fm_dialog.h"

#include <memory>

class QCheckBox;
class QGroupBox;
class QLineEdit;
namespace Ui {
class OptionsFM;
}

class TOptionsFM : public TfmDialog
{
    Q_OBJECT
public:
    explicit TOptionsFM(QWidget *parent = nullptr);
    ~TOptionsFM() override;

    QGroupBox *gbNumeric;
    QLineEdit *edReportNum;
    QLineEdit *edOrderNum;
    QLineEdit *edOrderPostfix;
    QGroupBox *cxGroupBox1;
    QLineEdit *cxTextEdit1;
    QLineEdit *cxTextEdit2;
    QLineEdit *cxTextEdit3;
    // A backup at every orderly exit: the per-user setting, stored at OK.
    QCheckBox *cbAutoBackup;

    // Reads the currency marks and the CONFIG keys into the editors.
    void FormShow(QObject *sender) override;
    // The currency marks go back to the main window's store when the dialog was accepted.
    void FormClose(QObject *sender, TCloseAction &action) override;
    // Writes the CONFIG keys, in the order of the table.
    void actOKExecute(QObject *sender);
    void actCancelExecute(QObject *sender);

private:
    struct Setting
    {
        QLineEdit *editor;
        QString key;
    };
    QList<Setting> Settings() const;

    std::unique_ptr<Ui::OptionsFM> ui;
};

// The dialog while it runs; the main window creates it here and clears it afterwards.
extern TOptionsFM *OptionsFM;
