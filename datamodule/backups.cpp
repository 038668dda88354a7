#include "backups.h"

#include "fib_errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QString TBackups::AutomaticPrefix = QStringLiteral("auto ");

namespace {

const QString kStamp = QStringLiteral("yyyy-MM-dd HH-mm-ss");

[[noreturn]] void refuse(const QString &message) { throw EFIBClientError(0, message); }

// The engine's own words behind ours.
template <typename F>
void explained(const QString &what, F &&work)
{
    try {
        work();
    } catch (const EFIBError &e) {
        refuse(what + QStringLiteral("\r\n") + e.Message());
    }
}

} // namespace

TBackups::TBackups(const TFIBServer &server, const QString &database, const QString &libraryName)
    : m_services(server, libraryName), m_database(database)
{
}

QString TBackups::Make(const QString &folder) { return Write(folder, QStringLiteral("kelvarion ")); }

QString TBackups::MakeAutomatic(const QString &folder, int keep)
{
    const QString made = Write(folder, AutomaticPrefix);
    // The stamp sorts as the time does, so the oldest come first by name.
    QDir dir(folder);
    const QStringList automatic = dir.entryList({AutomaticPrefix + QStringLiteral("*.fbk")}, QDir::Files, QDir::Name);
    for (qsizetype i = 0; i + keep < automatic.size(); ++i)
        dir.remove(automatic.at(i));
    return made;
}

QString TBackups::Write(const QString &folder, const QString &prefix)
{
    if (!QDir().mkpath(folder) || !QFileInfo(folder).isWritable())
        refuse(QStringLiteral("Папка \"%1\" недоступна для записи: резервная копия не создана.").arg(folder));
    const QDateTime at = Now.isValid() ? Now : QDateTime::currentDateTime();
    QString path = QDir(folder).filePath(prefix + at.toString(kStamp) + QStringLiteral(".fbk"));
    // Two backups within one second do not overwrite each other.
    for (int n = 2; QFile::exists(path); ++n)
        path = QDir(folder).filePath(prefix + at.toString(kStamp) + QStringLiteral(" (%1).fbk").arg(n));
    explained(QStringLiteral("Не удалось создать резервную копию базы данных."), [&] {
        try {
            m_services.Backup(m_database, path);
        } catch (...) {
            QFile::remove(path);
            throw;
        }
    });
    return path;
}

QString TBackups::Restore(const QString &backupFile)
{
    if (!QFileInfo(backupFile).isFile())
        refuse(QStringLiteral("Файл резервной копии \"%1\" не найден.").arg(backupFile));
    // Restored beside the database first: a failure leaves the database as it was.
    const QString fresh = m_database + QStringLiteral(".restoring");
    QFile::remove(fresh);
    explained(QStringLiteral("Не удалось восстановить базу данных из файла \"%1\".").arg(backupFile),
              [&] { m_services.Restore(backupFile, fresh); });

    const QFileInfo db(m_database);
    const bool replacing = db.exists();
    const QString kept = db.dir().filePath(db.completeBaseName() + QStringLiteral(" до восстановления ") +
                                           QDateTime::currentDateTime().toString(kStamp) + QLatin1Char('.') +
                                           db.suffix());
    if (replacing && !QFile::rename(m_database, kept)) {
        QFile::remove(fresh);
        refuse(QStringLiteral("Файл базы данных \"%1\" занят или недоступен: восстановление не выполнено.")
                   .arg(m_database));
    }
    if (!QFile::rename(fresh, m_database)) {
        QFile::rename(kept, m_database);
        refuse(QStringLiteral("Не удалось поставить восстановленную базу данных на место \"%1\".").arg(m_database));
    }
    return replacing ? kept : QString();
}
