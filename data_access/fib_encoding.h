#pragma once
// Text bytes to and from the database. The connection has no character set, so the program decides:
// schema statements go as UTF-8, everything else in the ANSI code page (Windows-1251).

#include <QByteArray>
#include <QString>

QByteArray AnsiEncode(QStringView text);
QString AnsiDecode(const char *bytes, int length);
inline QString AnsiDecode(const QByteArray &bytes) { return AnsiDecode(bytes.constData(), int(bytes.size())); }

// Character set numbers whose bytes are UTF-8.
inline bool IsUtf8CharSet(int charSet) { return charSet == 3 || charSet == 4; }

QByteArray EncodeText(QStringView text, bool utf8);
QString DecodeText(const char *bytes, int length, bool utf8);

// The first word of a statement, upper-cased, after blanks and comments.
QString FirstSqlWord(QStringView sql);
// ALTER, COMMENT, CREATE, DECLARE, DROP, GRANT, RECREATE and REVOKE statements.
bool IsDDLStatement(QStringView sql);
