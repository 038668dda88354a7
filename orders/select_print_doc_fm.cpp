#include "select_print_doc_fm.h"

#include <QCheckBox>
#include <QVBoxLayout>

const QString TSelectPrintDocFM::Caption = QStringLiteral("Выберите необходимые документы");

TSelectPrintDocFM::TSelectPrintDocFM(QWidget *parent) : TfmDialog(0, parent)
{
    setObjectName(QStringLiteral("SelectPrintDocFM"));
    setWindowTitle(Caption);
    auto *layout = new QVBoxLayout(pnlMain);
    layout->setContentsMargins(12, 8, 12, 8);
    const auto box = [&](const char *name, const char *caption, bool checked) {
        auto *check = new QCheckBox(QString::fromUtf8(caption), pnlMain);
        check->setObjectName(QLatin1String(name));
        check->setChecked(checked);
        layout->addWidget(check);
        return check;
    };
    cxCheckBox1 = box("cxCheckBox1", "Заявка", true);
    cxCheckBox2 = box("cxCheckBox2", "Заказ-наряд", false);
    cxCheckBox3 = box("cxCheckBox3", "Счет", false);
    cxCheckBox4 = box("cxCheckBox4", "Счет-фактура", false);
    cxCheckBox5 = box("cxCheckBox5", "Акт", false);
    layout->addStretch(1);
    // The buttons close the dialog by their modal results alone.
    actOK->OnExecute = [](QObject *) {};
    actCancel->OnExecute = [](QObject *) {};
    resize(360, 240);
}
