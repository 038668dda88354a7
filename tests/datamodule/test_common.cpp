// Money text and the Russian amount in words, as the order documents print them.
#include "common.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

qint64 fixed(double value) { return qint64(std::llround(value * 10000)); }

QString inWords(qint64 amount) { return AmountInWords("руб.", "коп.", amount); }

} // namespace

TEST(AmountInWords, TableOfAmounts)
{
    struct Row { qint64 amount; const char *words; };
    const Row rows[] = {
        {fixed(1.00), "Один руб. 00 коп."}, {fixed(21.05), "Двадцать один руб. 05 коп."},
        {fixed(2000), "Две тысячи руб. 00 коп."}, {fixed(11000), "Одиннадцать тысяч руб. 00 коп."},
        {fixed(12.50), "Двенадцать руб. 5 коп."}, {fixed(100.10), "Сто руб. 1 коп."}, {0, " руб. 00 коп."},
        {fixed(40), "Сорок руб. 00 коп."}, {fixed(105), "Сто  пять руб. 00 коп."},
        {fixed(512), "Пятьсот двенадцать руб. 00 коп."}, {fixed(3001), "Три тысячи один руб. 00 коп."},
        {fixed(5000), "Пять тысяч руб. 00 коп."}, {fixed(21000), "Двадцать одна тысяча руб. 00 коп."},
        {fixed(1000000), "Один миллион тысяч руб. 00 коп."},
        // Two to four millions carry the Latin letter, as the printed documents do.
        {fixed(2000000), "Два миллион\x61 тысяч руб. 00 коп."},
        {fixed(1001000), "Один миллион одна тысяча руб. 00 коп."},
        {fixed(1234567.89), "Один миллион двести тридцать четыре тысячи пятьсот шестьдесят семь руб. 89 коп."},
        {fixed(5000000000.0), "Пять миллиардов миллионов тысяч руб. 00 коп."},
        {qint64(1000000000000) * 10000, "Один триллион миллиардов миллионов тысяч руб. 00 коп."},
        // The largest amount the fixed-point type holds.
        {std::numeric_limits<qint64>::max(),
         "Девятьсот двадцать два триллиона триста тридцать семь миллиардов двести  три миллион\x61 шестьсот "
         "восемьдесят пять тысяч четыреста семьдесят семь руб. 5807 коп."},
        {fixed(0.5), " руб. 5 коп."},
    };
    for (const Row &r : rows)
        EXPECT_EQ(inWords(r.amount), QString::fromUtf8(r.words)) << r.amount;
    EXPECT_EQ(AmountInWords("долл.", "цент.", fixed(3)), "Три долл. 00 цент.");
}

TEST(AmountInWords, PiecesFollowTheirTablesNegativesOrBadDigitsRaiseAndMoneyTextAndNullFilters)
{
    EXPECT_EQ(QStringList({DigitWord("1", 3, 2), DigitWord("2", 3, 2), DigitWord("2", 3, 1), DigitWord("0", 4, 1),
                           DigitWord("4", 2, 1)}).join('/'), "одна/две/два/десять/сорок");
    EXPECT_EQ(QStringList({GroupWord(1, "000"), GroupWord(1, "1"), GroupWord(1, "013"), GroupWord(3, "22"),
                           GroupWord(0, "5"), GroupWord(5, "5")}).join('/'), "тысяч/тысяча/тысяч/миллиарда//");
    EXPECT_EQ(QStringList({TripletWords("115", 1), TripletWords("010", 1), TripletWords("302", 2)}).join('/'),
              "сто пятнадцать/десять/триста  две");
    EXPECT_THROW(inWords(fixed(-5)), EConvertError);
    EXPECT_THROW(inWords(fixed(-0.5)), EConvertError);
    EXPECT_THROW(DigitWord("x", 3, 1), EConvertError);

    // Money text and null filters.
    EXPECT_EQ(FormatMoney(1234.5) + FormatMoney(0) + FormatMoney(-2.5), "1234.50 р. 0.00 р. -2.50 р. ");
    CurrencyWords().Val1 = "$";
    EXPECT_EQ(FormatMoney(7), "7.00 $ ");
    CurrencyWords() = TCurrencyWords();
    EXPECT_TRUE(!StrOrNull("").isValid() && StrOrNull("абв") == QVariant(QString("абв")));
}
