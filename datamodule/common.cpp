#include "common.h"

#include <array>
#include <cstdlib>

namespace {

int toDigit(const QString &text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok)
        throw EConvertError(QStringLiteral("'%1' is not a valid integer value").arg(text));
    return value;
}

// The teen column applies when the last two characters make 10 to 19.
bool isTeen(const QString &digits)
{
    if (digits.size() < 2)
        return false;
    const int lastTwo = toDigit(digits.right(2));
    return lastTwo >= 10 && lastTwo <= 19;
}

// The amount in the general number form with a comma: trailing zeros of the fraction dropped.
QString generalText(qint64 amount)
{
    const bool negative = amount < 0;
    const quint64 magnitude = negative ? quint64(-(amount + 1)) + 1 : quint64(amount);
    QString text = QString::number(magnitude / 10000);
    QString fraction = QStringLiteral("%1").arg(magnitude % 10000, 4, 10, QLatin1Char('0'));
    while (fraction.endsWith(QLatin1Char('0')))
        fraction.chop(1);
    if (!fraction.isEmpty())
        text += QLatin1Char(',') + fraction;
    return negative ? QLatin1Char('-') + text : text;
}

} // namespace

TCurrencyWords &CurrencyWords()
{
    static TCurrencyWords words;
    return words;
}

QVariant StrOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QString FormatMoney(double value)
{
    return QString::asprintf("%2.2f", value) + QLatin1Char(' ') + CurrencyWords().Val1 + QLatin1Char(' ');
}

QString DigitWord(const QString &digit, int position, int gender)
{
    static const std::array<std::array<const char *, 4>, 10> words{{
        {"", "", "", "десять"},
        {"сто", "", "один", "одиннадцать"},
        {"двести", "двадцать", "два", "двенадцать"},
        {"триста", "тридцать", "три", "тринадцать"},
        {"четыреста", "сорок", "четыре", "четырнадцать"},
        {"пятьсот", "пятьдесят", "пять", "пятнадцать"},
        {"шестьсот", "шестьдесят", "шесть", "шестнадцать"},
        {"семьсот", "семьдесят", "семь", "семнадцать"},
        {"восемьсот", "восемьдесят", "восемь", "восемнадцать"},
        {"девятьсот", "девяносто", "девять", "девятнадцать"},
    }};
    const int d = toDigit(digit);
    if (d < 0 || d > 9 || position < 1 || position > 4)
        return QString();
    if (position == 3 && gender == 2 && d == 1)
        return QStringLiteral("одна");
    if (position == 3 && gender == 2 && d == 2)
        return QStringLiteral("две");
    return QString::fromUtf8(words[d][position - 1]);
}

QString GroupWord(int group, const QString &digits)
{
    // "миллионa" ends in a Latin "a" on purpose: printed documents carry it so.
    static const std::array<std::array<const char *, 3>, 5> words{{
        {"", "", ""},
        {"тысяча", "тысячи", "тысяч"},
        {"миллион", "миллион\x61", "миллионов"},
        {"миллиард", "миллиарда", "миллиардов"},
        {"триллион", "триллиона", "триллионов"},
    }};
    if (group < 0 || group > 4 || digits.isEmpty())
        return QString();
    const int last = toDigit(digits.right(1));
    int column = 2;
    if (!isTeen(digits)) {
        if (last == 1)
            column = 0;
        else if (last >= 2 && last <= 4)
            column = 1;
    }
    return QString::fromUtf8(words[group][column]);
}

QString TripletWords(const QString &digits, int gender)
{
    QString result;
    if (isTeen(digits)) {
        if (digits.size() == 3)
            result += QLatin1Char(' ') + DigitWord(digits.left(1), 1, gender);
        result += QLatin1Char(' ') + DigitWord(digits.right(1), 4, gender);
    } else {
        for (int i = 1; i <= digits.size(); ++i)
            result += QLatin1Char(' ') + DigitWord(digits.mid(i - 1, 1), i - int(digits.size()) + 3, gender);
    }
    return result.trimmed();
}

QString AmountInWords(const QString &wholeUnit, const QString &fractionUnit, qint64 amount)
{
    const QString text = generalText(amount).trimmed();
    const qsizetype comma = text.indexOf(QLatin1Char(','));
    QString whole = comma < 0 ? text : text.left(comma);
    const QString fraction = comma < 0 ? QStringLiteral("00") : text.mid(comma + 1);

    int group = 0;
    QString result;
    while (whole.size() >= 4) {
        const int gender = group == 1 ? 2 : 1;
        const QString triplet = whole.right(3);
        result = (TripletWords(triplet, gender) + QLatin1Char(' ') + GroupWord(group, triplet) + QLatin1Char(' ')
                  + result).trimmed();
        whole.chop(3);
        ++group;
    }
    const int gender = group == 1 ? 2 : 1;
    result = (TripletWords(whole, gender) + QLatin1Char(' ') + GroupWord(group, whole) + QLatin1Char(' ') + result)
                 .trimmed();
    result += QLatin1Char(' ') + wholeUnit + QLatin1Char(' ') + fraction + QLatin1Char(' ') + fractionUnit;
    if (!result.isEmpty())
        result[0] = result[0].toUpper();
    return result;
}
