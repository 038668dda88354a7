// The RTF engine on documents held in memory: reading the text, keeping what it does not edit, tables,
// rows, cells and replacing text that formatting splits.
#include "rtf_document.h"
#include "rtf_samples.h"
#include "word_processor.h"

#include <gtest/gtest.h>

namespace {

int count(const QByteArray &haystack, const QByteArray &needle)
{
    return int(haystack.count(needle));
}

TEST(RtfDocument, DecodesTextEscapes)
{
    struct Case
    {
        QByteArray rtf;
        QString text;
    } cases[] = {
        {rtfWith(R"(\'cf\'f0\'e8\'e2\'e5\'f2)"), QStringLiteral("Привет\n")},
        {rtfWith(R"(\'e9t\'e9)", "\\ansicpg1252"), QStringLiteral("été\n")},
        {rtfWith(R"(\f1 \'cf\'e0\f0\'e9)", "\\ansicpg1252"), QStringLiteral("Паé\n")}, // \fcharset204 font
        {rtfWith(R"(\u1055\'cf\u1088?{\uc2\u1080\'e8\'e8}\u1074 vx)"), QStringLiteral("Привx\n")},
        {rtfWith(R"(a\~b\emdash c\tab d\_e\line f\{g\}\\)"), QStringLiteral("a\u00A0b\u2014c\td\u2011e\nf{g}\\\n")},
        {rtfWith(R"({\*\bkmkstart x}a{\*\bkmkend x}{\pict\wmetafile8 0101}b{\field{\*\fldinst PAGE}{\fldrslt 7}})"),
         QStringLiteral("ab7\n")},
        {rtfWith(R"(\bin3 {}\ c)"), QStringLiteral(" c\n")},
    };
    for (const Case &c : cases)
        EXPECT_EQ(RtfDocument(c.rtf).Text(), c.text) << c.rtf.constData();
}

TEST(RtfDocument, WritesUntouchedBytesBack)
{
    for (const QByteArray &rtf : {sampleRtf(), rtfWith(R"(\bin3 {}\ c)"), "  " + rtfWith("x") + "\r\ntrailing"})
        EXPECT_EQ(RtfDocument(rtf).ToRtf(), rtf);
}

TEST(RtfDocument, FindsTablesRowsAndCells)
{
    const RtfDocument doc(sampleRtf());
    ASSERT_EQ(doc.TableCount(), 3);
    EXPECT_EQ(doc.RowCount(1), 1);
    EXPECT_EQ(doc.RowCount(2), 1);
    EXPECT_EQ(doc.RowCount(3), 1);
    EXPECT_EQ(doc.ColumnCount(2, 1), 3);
    EXPECT_EQ(doc.CellText(1, 1, 1), QStringLiteral("Банк"));
    EXPECT_EQ(doc.CellText(2, 1, 2), QStringLiteral("Наименование"));
    EXPECT_EQ(doc.CellText(3, 1, 1), QString());
    EXPECT_EQ(doc.CellText(3, 1, 2), QStringLiteral("#MainChief#"));
}

TEST(RtfDocument, AddedRowCopiesTheLastRowsDefinitionAndFormatting)
{
    RtfDocument doc(sampleRtf());
    const QByteArray definition = R"(\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)";
    const QByteArray before = doc.ToRtf();
    doc.AddRow(2);
    doc.AddRow(2);
    ASSERT_EQ(doc.RowCount(2), 3);
    const QByteArray after = doc.ToRtf();
    EXPECT_EQ(count(after, definition), 3 * count(before, definition));
    EXPECT_EQ(count(after, R"(\pard\plain\intbl\qr\f0\fs20 {\b )"), 3);
    EXPECT_EQ(count(after, R"(\lastrow)"), 2) << "only the last row's two definitions say so";
    EXPECT_EQ(count(after, R"(\irow2\irowband2)"), 2);
    for (int column = 1; column <= 3; ++column)
        EXPECT_EQ(doc.CellText(2, 3, column), QString());
    EXPECT_EQ(doc.CellText(2, 1, 3), QStringLiteral("Сумма"));
    EXPECT_EQ(doc.TableCount(), 3);

    doc.SetCellText(2, 3, 3, QStringLiteral("1500.00 р. "));
    EXPECT_TRUE(doc.ToRtf().contains(R"(\qr\f0\fs20 {\b {\uc1 1500.00 \u1088\'f0. }})")) << doc.ToRtf().constData();
    const RtfDocument reread(doc.ToRtf());
    EXPECT_EQ(reread.RowCount(2), 3);
    EXPECT_EQ(reread.CellText(2, 3, 3), QStringLiteral("1500.00 р. "));
    EXPECT_EQ(reread.CellText(3, 1, 2), QStringLiteral("#MainChief#"));
}

TEST(RtfDocument, CellTextsAreWrittenAndReadBack)
{
    const QString texts[] = {QStringLiteral("Замена масла"), QStringLiteral("a\\b{c}"), QStringLiteral("две\nстроки"),
                             QStringLiteral("€ and ✓"), QString()};
    for (const QString &text : texts) {
        RtfDocument doc(sampleRtf());
        doc.AddRow(2);
        doc.SetCellText(2, 2, 2, text);
        doc.SetCellText(1, 1, 2, text); // over a text that was there
        const RtfDocument reread(doc.ToRtf());
        EXPECT_EQ(reread.CellText(2, 2, 2), text);
        EXPECT_EQ(reread.CellText(1, 1, 2), text);
        EXPECT_EQ(reread.CellText(1, 1, 1), QStringLiteral("Банк"));
    }
    RtfDocument doc(sampleRtf());
    doc.SetCellText(1, 1, 1, QStringLiteral("Пе"), 26);
    EXPECT_TRUE(doc.ToRtf().contains(R"({\fs26\uc1\u1055\'cf\u1077\'e5})")) << doc.ToRtf().constData();
}

TEST(RtfDocument, ReplacesSplitPlaceholders)
{
    struct Case
    {
        QByteArray body;
        QString find;
        Qt::CaseSensitivity cs;
        int replaced;
        QString text;
        QByteArray written; // a part of the file after the replacement
    } cases[] = {
        {R"({\b #Main}{\i Name#}!)", "#MainName#", Qt::CaseInsensitive, 1, "X!\n", R"({\b X}{\i }!)"},
        {R"(#Main\plain\f1 Name# #mainname#)", "#MainName#", Qt::CaseInsensitive, 2, "X X\n", R"(X\plain\f1  X)"},
        {R"(#Ma{\*\bkmkstart b}in{\*\bkmkend b}Name#)", "#mainNAME#", Qt::CaseInsensitive, 1, "X\n",
         R"(X{\*\bkmkstart b}{\*\bkmkend b})"},
        {R"(\f1 #\'c8\'cc\'df# #\u1080\'e8\u1084?\u1103?#)", "#имя#", Qt::CaseInsensitive, 2, "X X\n", {}},
        {R"(#MainName# #mainname#)", "#MainName#", Qt::CaseSensitive, 1, "X #mainname#\n", {}},
        {R"(#Main\par Name#)", "#MainName#", Qt::CaseInsensitive, 0, "#Main\nName#\n", {}},
        {R"(#Main\cell Name#)", "#Main\aName#", Qt::CaseInsensitive, 0, "#Main\aName#\n", {}},
    };
    for (const Case &c : cases) {
        RtfDocument doc(rtfWith(c.body));
        EXPECT_EQ(doc.ReplaceAll(c.find, QStringLiteral("X"), c.cs, false), c.replaced) << c.body.constData();
        EXPECT_EQ(doc.Text(), c.text) << c.body.constData();
        EXPECT_TRUE(doc.ToRtf().contains(c.written)) << doc.ToRtf().constData();
        EXPECT_EQ(RtfDocument(doc.ToRtf()).Text(), c.text);
    }
}

TEST(RtfDocument, ReplacementsKeepTheDocumentWhole)
{
    RtfDocument doc(sampleRtf());
    EXPECT_EQ(doc.ReplaceAll("#MainName#", QStringLiteral("ООО «Мотор»\r\nг. Тверь"), Qt::CaseInsensitive, false, 26), 2);
    EXPECT_EQ(doc.ReplaceAll("#MainChief#", QStringLiteral("Иванов"), Qt::CaseInsensitive, false), 1);
    EXPECT_EQ(doc.ReplaceAll("#MainTel#", QString(), Qt::CaseInsensitive, false), 1);
    EXPECT_EQ(doc.ReplaceAll("nome", QStringLiteral("1"), Qt::CaseInsensitive, true), 0) << "not a whole word";
    EXPECT_EQ(doc.ReplaceAll("#nomer#", QStringLiteral("P-1"), Qt::CaseInsensitive, true), 1);
    const QByteArray rtf = doc.ToRtf();
    EXPECT_TRUE(rtf.contains(R"({\pict\pngblip\picw10\pich10 )" + QByteArray(kPixelPng) + "}"));
    EXPECT_TRUE(rtf.contains(R"({\*\generator Kelvarion;}{\info{\title \'d1\'f7\'e5\'f2}{\author test}})"));
    EXPECT_TRUE(rtf.contains(R"({{{{\uc1\u1048\'c8)")) << "nested groups kept around the replacement";
    EXPECT_TRUE(rtf.contains(R"(\'bb\line\u1075\'e3)")) << "a line break inside the value";
    const RtfDocument reread(rtf);
    ASSERT_EQ(reread.TableCount(), 3);
    EXPECT_EQ(reread.CellText(3, 1, 2), QStringLiteral("Иванов"));
    EXPECT_TRUE(reread.Text().startsWith(QStringLiteral("ООО «Мотор»\nг. Тверь\n"))) << "the header's text";
    EXPECT_TRUE(reread.Text().contains(QStringLiteral("ООО «Мотор»\nг. Тверь, Счет № P-1\n")));
}

TEST(RtfDocument, FailsWithRussianMessages)
{
    struct Case
    {
        QByteArray rtf;
        QString message;
    } cases[] = {
        {"PK\x03\x04 not a document", QStringLiteral("Файл «d.rtf» не является документом RTF")},
        {"", QStringLiteral("Файл «d.rtf» не является документом RTF")},
        {sampleRtf().left(700), QStringLiteral("Документ RTF «d.rtf» повреждён: файл обрезан, не закрыто групп: 1")},
        {"{\\rtf1 abc\\", QStringLiteral("Документ RTF «d.rtf» повреждён: файл обрывается на середине команды")},
        {"{\\rtf1 \\'4", QStringLiteral("Документ RTF «d.rtf» повреждён: неверный шестнадцатеричный символ в позиции 7")},
        {"{\\rtf1 \\bin99 ab}", QStringLiteral("Документ RTF «d.rtf» повреждён: двоичные данные обрываются")},
    };
    for (const Case &c : cases) {
        try {
            RtfDocument doc(c.rtf, QStringLiteral("d.rtf"));
            ADD_FAILURE() << "read: " << c.rtf.constData();
        } catch (const EWordProcessorError &e) {
            EXPECT_EQ(e.Message(), c.message);
        }
    }
    RtfDocument doc(sampleRtf());
    auto message = [&](auto action) {
        try {
            action();
        } catch (const EWordProcessorError &e) {
            return e.Message();
        }
        return QString();
    };
    EXPECT_EQ(message([&] { doc.RowCount(4); }), QStringLiteral("В документе нет таблицы номер 4 (таблиц в нём: 3)"));
    EXPECT_EQ(message([&] { doc.SetCellText(2, 2, 1, "x"); }),
              QStringLiteral("В таблице 2 нет строки номер 2 (строк в ней: 1)"));
    EXPECT_EQ(message([&] { doc.SetCellText(2, 1, 4, "x"); }),
              QStringLiteral("В строке 1 таблицы 2 нет столбца номер 4 (столбцов в ней: 3)"));
    EXPECT_EQ(message([&] { doc.CellText(1, 1, 0); }),
              QStringLiteral("В строке 1 таблицы 1 нет столбца номер 0 (столбцов в ней: 2)"));
}

} // namespace
