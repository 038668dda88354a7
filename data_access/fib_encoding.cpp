#include "fib_encoding.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <QStringList>

namespace {

// Windows-1251 is stateless, so one converter each serves every call on the one thread we run on.
QStringEncoder &ansiEncoder()
{
    thread_local QStringEncoder encoder("windows-1251", QStringConverter::Flag::Stateless);
    return encoder;
}

QStringDecoder &ansiDecoder()
{
    thread_local QStringDecoder decoder("windows-1251", QStringConverter::Flag::Stateless);
    return decoder;
}

bool isBlank(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

} // namespace

QByteArray AnsiEncode(QStringView text)
{
    return ansiEncoder().encode(text);
}

QString AnsiDecode(const char *bytes, int length)
{
    if (length <= 0)
        return QString();
    // Plain ASCII needs no table.
    bool ascii = true;
    for (int i = 0; i < length && ascii; ++i)
        ascii = static_cast<unsigned char>(bytes[i]) < 0x80;
    if (ascii)
        return QString::fromLatin1(bytes, length);
    return ansiDecoder().decode(QByteArrayView(bytes, length));
}

QByteArray EncodeText(QStringView text, bool utf8)
{
    return utf8 ? text.toUtf8() : AnsiEncode(text);
}

QString DecodeText(const char *bytes, int length, bool utf8)
{
    return utf8 ? QString::fromUtf8(bytes, length) : AnsiDecode(bytes, length);
}

QString FirstSqlWord(QStringView sql)
{
    qsizetype i = 0;
    const qsizetype n = sql.size();
    for (;;) {
        while (i < n && isBlank(sql[i]))
            ++i;
        if (i + 1 < n && sql[i] == QLatin1Char('-') && sql[i + 1] == QLatin1Char('-')) {
            while (i < n && sql[i] != QLatin1Char('\n'))
                ++i;
            continue;
        }
        if (i + 1 < n && sql[i] == QLatin1Char('/') && sql[i + 1] == QLatin1Char('*')) {
            const qsizetype end = sql.indexOf(QStringLiteral("*/"), i + 2);
            i = end < 0 ? n : end + 2;
            continue;
        }
        break;
    }
    qsizetype j = i;
    while (j < n && (sql[j].isLetterOrNumber() || sql[j] == QLatin1Char('_')))
        ++j;
    return sql.mid(i, j - i).toString().toUpper();
}

bool IsDDLStatement(QStringView sql)
{
    static const QStringList ddl{"ALTER", "COMMENT", "CREATE", "DECLARE", "DROP", "GRANT", "RECREATE", "REVOKE"};
    return ddl.contains(FirstSqlWord(sql));
}
