#include "cash_card.h"

#include "date_edit.h"
#include "dialogs.h"
#include "fib_dataset.h"
#include "grid_column.h"
#include "grid_view.h"
#include "quick_add_lookup.h"
#include "value_editor.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>

QGroupBox *NewPeriodBox(QWidget *parent, TDateEdit *&up, TDateEdit *&to)
{
    auto *box = new QGroupBox(QStringLiteral("За период"), parent);
    box->setObjectName(QStringLiteral("gbPeriod"));
    auto *row = new QHBoxLayout(box);
    row->setContentsMargins(6, 4, 6, 6);
    up = new TDateEdit(box);
    up->setObjectName(QStringLiteral("deUp"));
    to = new TDateEdit(box);
    to->setObjectName(QStringLiteral("deTo"));
    for (auto [caption, editor] : {std::pair{"С: ", up}, std::pair{" по: ", to}}) {
        auto *label = new QLabel(QString::fromUtf8(caption), box);
        label->setObjectName(editor->objectName() + QStringLiteral("Lbl"));
        label->setBuddy(editor);
        row->addWidget(label);
        row->addWidget(editor);
        editor->setMinimumWidth(100);
    }
    box->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return box;
}

const QString TMoneyCardFM::SumText = QStringLiteral("Сумма должна быть числом больше нуля и не больше 100 000 000");

QString TMoneyCardFM::SumRefusal(const QVariant &sum)
{
    bool ok = false;
    const double value = sum.isNull() ? 0 : sum.toDouble(&ok);
    return ok && value > 0 && value <= MaxSum ? QString() : SumText;
}

QWidget *TMoneyCardFM::BoxEditor(const QString &field) const
{
    QWidget *box = FindFormControl(field);
    const QList<QWidget *> children =
        box ? box->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly) : QList<QWidget *>();
    return children.isEmpty() ? nullptr : children.first();
}

QVariant TMoneyCardFM::BoxValue(const QString &field) const
{
    auto *editor = dynamic_cast<TValueEditor *>(BoxEditor(field));
    return editor ? editor->EditValue() : QVariant();
}

void TMoneyCardFM::SetBoxValue(const QString &field, const QVariant &value)
{
    QWidget *widget = BoxEditor(field);
    auto *editor = dynamic_cast<TValueEditor *>(widget);
    if (!editor)
        return;
    editor->SetEditValue(value);
    PostEditValue(widget);
}

void TMoneyCardFM::SetArrayValue(const QString &field, const QVariant &value)
{
    if (!GridView || !DataSet() || !DataSet()->FindField(field))
        return;
    for (int i = 0; i < GridView->ColumnCount() && i < DataArray.size(); ++i)
        if (GridView->Columns(i)->FieldName().compare(field, Qt::CaseInsensitive) == 0)
            DataArray[i] = value;
}

void TMoneyCardFM::Refuse(const QString &text)
{
    Dialogs::Current().Show(Dialogs::Warning, text, Dialogs::Ok, windowTitle());
    SetModalResult(mrNone);
}

void TMoneyCardFM::actOKExecute(QObject *sender)
{
    if (ModalResult() != mrOk && !SaveWithoutClose)
        return;
    if (const QString text = Refusal(); !text.isEmpty()) {
        ErrorText = text;
        Refuse(text);
        return;
    }
    TComplexFM::actOKExecute(sender);
}

void TMoneyCardFM::FormCloseQuery(QObject *sender, bool &canClose)
{
    TFIBDataSet *ds = DataSet();
    const QString text = ModalResult() == mrCancel && ds && ds->State() == dsEdit ? Refusal() : QString();
    if (text.isEmpty()) {
        TComplexFM::FormCloseQuery(sender, canClose);
        return;
    }
    canClose = true;
    if (Dialogs::Current().Show(Dialogs::Confirmation, SaveQuestion, Dialogs::OkCancel, QStringLiteral("Подтверждение"))
        == Dialogs::ResultOk) {
        Refuse(text);
        canClose = false;
    }
}
