#include "materials_card_fm.h"

#include "data_dm.h"
#include "field_name_grammar.h"
#include "lookup_combo_box.h"
#include "quick_add_lookup.h"
#include "ui_materials_card_fm.h"

#include <QLineEdit>

const QStringList TMaterialsCardFM::ExitFields = {
    QStringLiteral("IDCMAT_LKP_CMAT_F_CMATNAME"), QStringLiteral("IDPROD_LKP_PROD_F_PRODNAME"),
    QStringLiteral("IDCNTRY_LKP_CNTRY_F_CNTRYNAME"), QStringLiteral("MATNAME")};

TMaterialsCardFM::TMaterialsCardFM(TDBGridView *gridView, const QString &namePrefix, const QString &procName,
                                   QWidget *parent)
    : TComplexFM(QStringLiteral("MaterialsCardFM"), gridView, namePrefix, procName, parent),
      ui(std::make_unique<Ui::MaterialsCardFM>())
{
    ui->setupUi(pnlMain);
    resize(720, 480);
    FormCreate(this);
}

TMaterialsCardFM::~TMaterialsCardFM() = default;

void TMaterialsCardFM::FormShow(QObject *sender)
{
    TComplexFM::FormShow(sender);
    if (QWidget *quantity = findChild<QWidget *>(TFieldNameGrammar::ComplexEditorName(QStringLiteral("QUANTITY"))))
        quantity->setEnabled(false);
    if (m_handlersSet)
        return;
    m_handlersSet = true;
    InstallQuickAdd(this, {{QStringLiteral("IDCMAT_LKP_CMAT_F_CMATNAME"), QStringLiteral("spCmatEdit"), &DataDM->spCmatOpen},
                           {QStringLiteral("IDPROD_LKP_PROD_F_PRODNAME"), QStringLiteral("spProdEdit"), &DataDM->spProdOpen},
                           {QStringLiteral("IDCNTRY_LKP_CNTRY_F_CNTRYNAME"), QStringLiteral("spCntryEdit"),
                            &DataDM->spCntryOpen}});
    for (const QString &field : ExitFields) {
        QWidget *editor = findChild<QWidget *>(TFieldNameGrammar::ComplexEditorName(field));
        auto *combo = qobject_cast<QComboBox *>(editor);
        auto *line = combo ? combo->lineEdit() : qobject_cast<QLineEdit *>(editor);
        if (line)
            connect(line, &QLineEdit::editingFinished, this, [this, editor] { ControlExit(editor); });
    }
}

void TMaterialsCardFM::ControlExit(QWidget *editor)
{
    PostEditValue(editor);
}

void TMaterialsCardFM::actOKExecute(QObject *sender)
{
    for (const QString &field : ExitFields)
        ControlExit(findChild<QWidget *>(TFieldNameGrammar::ComplexEditorName(field)));
    TComplexFM::actOKExecute(sender);
}
