#include "deploy_scripts.h"

#include <QFile>
#include <QStringDecoder>

namespace {

QStringList splitLines(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString &line : lines)
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
    return lines;
}

QString resourceName(DeployScript script)
{
    switch (script) {
    case DeployScript::Tables: return QStringLiteral(":/db/script_tab.sql");
    case DeployScript::Procedures: return QStringLiteral(":/db/script_proc.sql");
    case DeployScript::Update: return QStringLiteral(":/db/script_update.sql");
    }
    return QString();
}

} // namespace

QStringList BuiltInScript(DeployScript script)
{
    QFile file(resourceName(script));
    if (!file.open(QIODevice::ReadOnly))
        return QStringList();
    return splitLines(QString::fromUtf8(file.readAll()));
}

QString OverrideFileName(DeployScript script)
{
    switch (script) {
    case DeployScript::Tables: return QStringLiteral("script_tab.txt");
    case DeployScript::Procedures: return QStringLiteral("script_proc.txt");
    case DeployScript::Update: return QStringLiteral("script_update.txt");
    }
    return QString();
}

bool ReadOverrideFile(const QString &path, QStringList &lines)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return false;
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(bytes);
    if (utf8.hasError())
        text = QStringDecoder("windows-1251").decode(bytes);
    lines = splitLines(text);
    return true;
}
