#include "backups.h"

#include "fib_errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

const QString TBackups::AutomaticPrefix = QStringLiteral("auto ");

namespace {

const QString kStamp = QStringLiteral("yyyy-MM-dd HH-mm-ss");

// "database" of "/srv/shop/database.fdb", also of a path on a server that writes "\\".
QString baseName(const QString &path)
{
    const QString name = path.mid(qMax(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1);
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}

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
    : m_server(server), m_services(server, libraryName), m_database(database)
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

QString TBackups::Restore(const QString &backupFile, const QString &keepFolder)
{
    if (!QFileInfo(backupFile).isFile())
        refuse(QStringLiteral("Файл резервной копии \"%1\" не найден.").arg(backupFile));
    if (!m_server.Local())
        return RestoreThroughServer(backupFile, keepFolder);
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

QString TBackups::RestoreThroughServer(const QString &backupFile, const QString &keepFolder)
{
    const QString failed = QStringLiteral("Не удалось восстановить базу данных из файла \"%1\".").arg(backupFile);
    // Replacing a database others work on would fail only after the side restore and the kept backup.
    int others = -1;
    QString kept;
    try {
        if (m_services.Exists(m_database))
            others = m_services.OtherAttachments(m_database);
        if (others == 0)
            kept = Write(keepFolder.isEmpty() ? QFileInfo(backupFile).absolutePath() : keepFolder,
                         baseName(m_database) + QStringLiteral(" до восстановления "));
    } catch (const EFIBError &e) {
        refuse(QStringLiteral("Не удалось сохранить базу данных \"%1\" перед восстановлением: восстановление не "
                              "выполнено.\r\n").arg(m_database) + e.Message());
    }
    if (others > 0)
        refuse(QStringLiteral("С базой данных \"%1\" работают другие подключения (%2): восстановление не выполнено.")
                   .arg(m_database)
                   .arg(others));

    const QString side = m_database + QStringLiteral(".restoring");
    auto dropSide = [&] {
        try {
            m_services.Drop(side);
        } catch (const EFIBError &) {
            // Left half-made with no database to overwrite it: the next restore replaces it.
        }
    };
    try {
        m_services.Restore(backupFile, side, true);
    } catch (const EFIBError &e) {
        // What is left of the side database is reclaimed by restoring the kept one over it.
        if (!kept.isEmpty()) {
            try {
                m_services.Restore(kept, side, true);
            } catch (const EFIBError &) {
            }
            QFile::remove(kept);
        }
        dropSide();
        refuse(failed + QStringLiteral("\r\n") + e.Message());
    }

    try {
        m_services.Restore(backupFile, m_database, true);
    } catch (const EFIBError &e) {
        QString what = failed + QStringLiteral("\r\n") + e.Message();
        if (!kept.isEmpty()) {
            try {
                m_services.Restore(kept, m_database, true);
                what += QStringLiteral("\r\nБаза данных возвращена в прежнее состояние.");
            } catch (const EFIBError &) {
                what += QStringLiteral("\r\nПрежняя база данных сохранена в файле \"%1\".").arg(kept);
            }
        }
        dropSide();
        refuse(what);
    }
    dropSide();
    return kept;
}
