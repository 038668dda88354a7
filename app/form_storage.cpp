#include "form_storage.h"

#include <QSettings>
#include <QVariant>
#include <QWidget>

namespace {

const char *const kPlacementKey = "Placement";

// "edVal1.Text" names the control edVal1 and its Qt property "text".
QObject *controlOf(QWidget *form, const QString &prop, QByteArray &property)
{
    const QString control = prop.section(QLatin1Char('.'), 0, 0);
    QString name = prop.section(QLatin1Char('.'), 1);
    if (control.isEmpty() || name.isEmpty())
        return nullptr;
    name[0] = name[0].toLower();
    property = name.toLatin1();
    return form->findChild<QObject *>(control);
}

} // namespace

TFormStorage::TFormStorage(QWidget *form) : m_form(form)
{
}

QString TFormStorage::Section() const
{
    return IniSection.isEmpty() ? m_form->objectName() : IniSection;
}

bool TFormStorage::Restore()
{
    if (IniFileName.isEmpty())
        return false;
    QSettings ini(IniFileName, QSettings::IniFormat);
    if (ini.status() != QSettings::NoError)
        return false;
    ini.beginGroup(Section());
    for (const QString &prop : StoredProps) {
        QByteArray property;
        QObject *control = controlOf(m_form, prop, property);
        const QVariant value = ini.value(prop);
        if (control && value.isValid())
            control->setProperty(property.constData(), value.toString());
    }
    const QByteArray placement = QByteArray::fromBase64(ini.value(QLatin1String(kPlacementKey)).toString().toLatin1());
    return !placement.isEmpty() && m_form->restoreGeometry(placement);
}

void TFormStorage::Save()
{
    if (IniFileName.isEmpty())
        return;
    QSettings ini(IniFileName, QSettings::IniFormat);
    ini.beginGroup(Section());
    for (const QString &prop : StoredProps) {
        QByteArray property;
        if (QObject *control = controlOf(m_form, prop, property))
            ini.setValue(prop, control->property(property.constData()).toString());
    }
    ini.setValue(QLatin1String(kPlacementKey), QString::fromLatin1(m_form->saveGeometry().toBase64()));
    ini.endGroup();
    ini.sync();
}
