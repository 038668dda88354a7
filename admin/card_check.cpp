#include "card_check.h"

#include "dialogs.h"
#include "value_editor.h"

#include <QVariant>
#include <QWidget>

namespace {

QVariant valueOf(QWidget *editor)
{
    auto *value = dynamic_cast<TValueEditor *>(editor);
    return value ? value->EditValue() : QVariant();
}

} // namespace

bool TCardCheck::Fail(const QString &text) const
{
    Dialogs::Current().Show(Dialogs::Error, text, Dialogs::Ok, m_caption);
    return false;
}

bool TCardCheck::HasText(QWidget *editor, const QString &text) const
{
    const QVariant value = valueOf(editor);
    if (!value.isValid() || value.isNull() || value.toString().trimmed().isEmpty())
        return Fail(text);
    return true;
}

bool TCardCheck::HasValue(QWidget *editor, const QString &text) const
{
    const QVariant value = valueOf(editor);
    if (!value.isValid() || value.isNull())
        return Fail(text);
    return true;
}
