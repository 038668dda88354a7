#include "captions_file.h"

#include <QCoreApplication>
#include <QFileInfo>

QString TCaptionsFile::FileName()
{
    const QFileInfo executable(QCoreApplication::applicationFilePath());
    return executable.absolutePath() + QLatin1Char('/') + executable.completeBaseName() + QStringLiteral(".ini");
}
