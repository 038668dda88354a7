#pragma once
// Small helpers the windows share: filter values, money text and the Russian amount in words.

#include <QString>
#include <QVariant>
#include <stdexcept>

// A text that cannot be read as the number asked for.
class EConvertError : public std::runtime_error
{
public:
    explicit EConvertError(const QString &message) : std::runtime_error(message.toStdString()), Message(message) {}
    QString Message;
};

// The currency marks of the main window's three edits; the main window keeps them current.
struct TCurrencyWords
{
    QString Val1 = QStringLiteral("р.");
    QString Val2 = QStringLiteral("руб.");
    QString Val3 = QStringLiteral("коп.");
};
TCurrencyWords &CurrencyWords();

// The text, or Null when it is empty: empty filters reach the procedures as Null.
QVariant StrOrNull(const QString &text);

// Two decimals with a point, a blank, the short currency mark and a trailing blank.
QString FormatMoney(double value);

// The amount in Russian words with its fraction in digits, e.g. "Двадцать один руб. 05 коп.".
// `amount` is fixed-point with four decimals (value × 10 000). Raises EConvertError for a negative amount.
QString AmountInWords(const QString &wholeUnit, const QString &fractionUnit, qint64 amount);

// Words of up to three digits; gender 1 masculine, 2 feminine.
QString TripletWords(const QString &digits, int gender);
// The word of a thousands group (0 units, 1 thousands … 4 trillions) for the digits of that group.
QString GroupWord(int group, const QString &digits);
// The word of one digit at a position: 1 hundreds, 2 tens, 3 units, 4 teens.
QString DigitWord(const QString &digit, int position, int gender);
