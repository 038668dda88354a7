// The RTF engine: on documents held in memory, reading the text, keeping what it does not edit, tables,
// rows, cells and replacing text that formatting splits; as the word processor of order documents on
// files, the operations of a filled order, saving and failures. What LibreOffice reads in the filled
// order documents is the order documents' suite's to show.
#include "rtf_word_processor.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// The documents, as a word processor writes them: placeholders split over runs and bookmarks, a header,
// a picture, a field, both ways of placing a row's definition.
// A picture of one pixel, as the hexadecimal data of \pict.
constexpr const char *kPixelPng = "89504e470d0a1a0a0000000d49484452000000010000000108000000003a7e9b550000000a49444154789c6360000000"
                                  "02000148afa4710000000049454e44ae426082";

// Three tables: requisites (1 row, 2 columns), the lines with a header row (3 columns, its definition
// repeated before \row) and signatures (a picture and nested groups).
QByteArray sampleRtf()
{
    return QByteArray(R"({\rtf1\ansi\ansicpg1251\deff0\deflang1049
{\fonttbl{\f0\froman\fcharset204 Times New Roman;}{\f1\fswiss\fcharset0 Arial;}}
{\colortbl;\red0\green0\blue0;\red230\green230\blue230;}
{\*\generator Kelvarion;}{\info{\title \'d1\'f7\'e5\'f2}{\author test}}
\paperw11906\paperh16838\margl1134\margr567
{\header \pard\plain\ql\f0\fs16 #MainName#\par}
\pard\plain\qc\f0\fs24 {\b #Main}{\i Name#}, {\*\bkmkstart top}\'d1\'f7\'e5\'f2{\*\bkmkend top} \'b9 #nomer#\par
\trowd\trgaph108\trleft0\cellx3000\cellx6000
\pard\plain\intbl\f0 \'c1\'e0\'ed\'ea\cell\pard\plain\intbl\f0 #MainBank#\cell\row
\pard\plain\f0 #Main\plain\f1 Tel#\par
\trowd\irow0\irowband0\lastrow\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)"
R"(\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx5000\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx7000
\pard\plain\intbl\qc\f0\fs20 {\b \'b9}\cell\pard\plain\intbl\ql\f0\fs20 {\b \'cd\'e0\'e8\'ec\'e5\'ed\'ee\'e2\'e0\'ed\'e8\'e5}\cell)"
R"(\pard\plain\intbl\qr\f0\fs20 {\b \'d1\'f3\'ec\'ec\'e0}\cell
{\trowd\irow0\irowband0\lastrow\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)"
R"(\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx5000\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\cellx7000\row}
\pard\plain\f0 \'c8\'f2\'ee\'e3\'ee: #itog# {\field{\*\fldinst PAGE}{\fldrslt 1}}\par
\trowd\trgaph108\cellx4000\cellx8000
\pard\plain\intbl\f0 {\pict\pngblip\picw10\pich10 )" + QByteArray(kPixelPng) + R"(}\cell\pard\plain\intbl\f0 {{{#Main\i Chief#}}}\cell\row
\pard\plain\f0 \u1055\'cf\u1086?\uc2\u1082\'ea\'ea\par
})");
}

// The body of a one-paragraph document with the given code page and fonts.
QByteArray rtfWith(const QByteArray &body, const QByteArray &codepage = "\\ansicpg1251")
{
    return "{\\rtf1\\ansi" + codepage + "\\deff0{\\fonttbl{\\f0\\fcharset0 Arial;}{\\f1\\fcharset204 Arial;}}\n"
           + body + "\\par\n}";
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
// The message of the engine's failure in an action.
QString failure(const std::function<void()> &action)
{
    try {
        action();
    } catch (const EWordProcessorError &e) {
        return e.Message();
    }
    return QStringLiteral("(no failure)");
}

TEST(RtfDocument, DecodesTextEscapesWritesUntouchedBytesBackAndAddedRowsCopyTheLastRowsDefinitionAndFormatting)
{
    const std::pair<QByteArray, QString> cases[] = {
        {rtfWith(R"(\'cf\'f0\'e8\'e2\'e5\'f2)"), QStringLiteral("Привет\n")},
        {rtfWith(R"(\'e9t\'e9)", "\\ansicpg1252"), QStringLiteral("été\n")},
        {rtfWith(R"(\f1 \'cf\'e0\f0\'e9)", "\\ansicpg1252"), QStringLiteral("Паé\n")}, // \fcharset204 font
        {rtfWith(R"(\u1055\'cf\u1088?{\uc2\u1080\'e8\'e8}\u1074 vx)"), QStringLiteral("Привx\n")},
        {rtfWith(R"(a\~b\emdash c\tab d\_e\line f\{g\}\\)"), QStringLiteral("a\u00A0b\u2014c\td\u2011e\nf{g}\\\n")},
        {rtfWith(R"({\*\bkmkstart x}a{\*\bkmkend x}{\pict\wmetafile8 0101}b{\field{\*\fldinst PAGE}{\fldrslt 7}})"),
         QStringLiteral("ab7\n")},
        {"  " + rtfWith(R"(\bin3 {}\ c)") + "\r\ntrailing", QStringLiteral(" c\n")},
    };
    for (const auto &[rtf, text] : cases)
        EXPECT_EQ(QPair(RtfDocument(rtf).Text(), RtfDocument(rtf).ToRtf()), QPair(text, rtf)) << rtf.constData();
    EXPECT_EQ(RtfDocument(sampleRtf()).ToRtf(), sampleRtf());

    // Added rows copy the last row's definition and formatting.
    RtfDocument doc(sampleRtf());
    EXPECT_EQ(QList<int>({doc.TableCount(), doc.RowCount(1), doc.RowCount(2), doc.RowCount(3), doc.ColumnCount(2, 1)}),
              QList<int>({3, 1, 1, 1, 3}));
    EXPECT_EQ(QStringList({doc.CellText(1, 1, 1), doc.CellText(2, 1, 2), doc.CellText(3, 1, 1), doc.CellText(3, 1, 2)}),
              QStringList({"Банк", "Наименование", "", "#MainChief#"}));
    const QByteArray definition = R"(\trgaph108\trleft-108\clbrdrt\brdrs\brdrw10\clbrdrb\brdrs\brdrw10\clcbpat2\cellx1000)";
    doc.AddRow(2);
    doc.AddRow(2);
    ASSERT_EQ(doc.RowCount(2), 3);
    const QByteArray after = doc.ToRtf();
    // The definitions and formatting are copied; only the last row's two definitions say \lastrow.
    EXPECT_EQ(QList<qsizetype>({after.count(definition), after.count(R"(\pard\plain\intbl\qr\f0\fs20 {\b )"),
                                after.count(R"(\lastrow)"), after.count(R"(\irow2\irowband2)")}),
              QList<qsizetype>({3 * sampleRtf().count(definition), 3, 2, 2}));
    EXPECT_EQ(QStringList({doc.CellText(2, 3, 1), doc.CellText(2, 3, 2), doc.CellText(2, 3, 3), doc.CellText(2, 1, 3)}),
              QStringList({"", "", "", "Сумма"}));

    doc.SetCellText(2, 3, 3, QStringLiteral("1500.00 р. "));
    EXPECT_TRUE(doc.ToRtf().contains(R"(\qr\f0\fs20 {\b {\uc1 1500.00 \u1088\'f0. }})")) << doc.ToRtf().constData();

    // Texts read back as written, also over texts written before; a size set puts them in a group.
    int row = 3;
    for (const QString &text : {QStringLiteral("Замена масла"), QStringLiteral("a\\b{c}"), QStringLiteral("две\nстроки"),
                                QStringLiteral("€ and ✓"), QString()}) {
        doc.AddRow(2);
        doc.SetCellText(2, ++row, 2, text);
        doc.SetCellText(1, 1, 2, text);
        const RtfDocument reread(doc.ToRtf());
        EXPECT_EQ(QStringList({reread.CellText(2, row, 2), reread.CellText(1, 1, 2), reread.CellText(1, 1, 1),
                               reread.CellText(2, 3, 3), reread.CellText(3, 1, 2)}),
                  QStringList({text, text, "Банк", "1500.00 р. ", "#MainChief#"}));
    }
    doc.SetCellText(1, 1, 1, QStringLiteral("Пе"), 26);
    EXPECT_TRUE(doc.ToRtf().contains(R"({\fs26\uc1\u1055\'cf\u1077\'e5})")) << doc.ToRtf().constData();
}

TEST(RtfDocument, ReplacesSplitPlaceholders)
{
    // What is found, how many times, the text after, and a part of the file after.
    struct Case { QByteArray body; QString find; Qt::CaseSensitivity cs; int replaced; QString text; QByteArray written; };
    const Case cases[] = {
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
        EXPECT_TRUE(doc.ToRtf().contains(c.written)) << doc.ToRtf().constData();
        EXPECT_EQ(RtfDocument(doc.ToRtf()).Text(), c.text);
    }
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

class RtfWordProcessorTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return dir.filePath(name); }
    QTemporaryDir dir;
    RtfWordProcessor word;
};

TEST_F(RtfWordProcessorTest, FailuresAreRussianMessagesKeepingDocumentAndFileAndReplacementsKeepTheDocumentWhole)
{
    writeFile(path("ok.rtf"), sampleRtf());
    const QString damaged = QStringLiteral("Документ RTF «d.rtf» повреждён: ");
    auto read = [](const QByteArray &rtf) { return [rtf] { RtfDocument(rtf, QStringLiteral("d.rtf")); }; };
    const std::pair<std::function<void()>, QString> cases[] = {
        {read("PK\x03\x04 not a document"), QStringLiteral("Файл «d.rtf» не является документом RTF")},
        {read(""), QStringLiteral("Файл «d.rtf» не является документом RTF")},
        {read(sampleRtf().left(700)), damaged + "файл обрезан, не закрыто групп: 1"},
        {read("{\\rtf1 abc\\"), damaged + "файл обрывается на середине команды"},
        {read("{\\rtf1 \\'4"), damaged + "неверный шестнадцатеричный символ в позиции 7"},
        {read("{\\rtf1 \\bin99 ab}"), damaged + "двоичные данные обрываются"},
        {[&] { word.Open(dir.path()); }, QStringLiteral("Файл «%1» не найден").arg(dir.path())},
        {[&] { word.Open(path("ok.rtf")); word.Table(4); }, QStringLiteral("В документе нет таблицы номер 4 (таблиц в нём: 3)")},
        {[&] { word.Table(0); }, QStringLiteral("В документе нет таблицы номер 0 (таблиц в нём: 3)")},
        {[&] { word.Table(2).SetCellText(2, 1, "x"); }, QStringLiteral("В таблице 2 нет строки номер 2 (строк в ней: 1)")},
        {[&] { word.Table(2).SetCellText(1, 9, "x"); }, QStringLiteral("В строке 1 таблицы 2 нет столбца номер 9 (столбцов в ней: 3)")},
        {[&] { word.Table(1).CellText(1, 0); }, QStringLiteral("В строке 1 таблицы 1 нет столбца номер 0 (столбцов в ней: 2)")},
        {[&] { word.Open(path("none.rtf")); }, QStringLiteral("Файл «%1» не найден").arg(path("none.rtf"))},
        {[&] { word.Table(2).AddRow(), word.SaveAs(path("ok.rtf/x.rtf")); },
         QStringLiteral("Не удалось сохранить документ в файл «%1»: ").arg(path("ok.rtf/x.rtf"))},
        {[&] { word.SaveAs(dir.path()); }, QStringLiteral("Не удалось сохранить документ в файл «%1»: ").arg(dir.path())},
        {[&] { WordFind f{"#"}; f.MatchWildcards = true, word.ReplaceAll(f); }, QStringLiteral("Поиск по шаблону, по звучанию и по словоформам не поддерживается")},
        {[&] { word.SetSelectionFontSize(0); }, QStringLiteral("Недопустимый размер шрифта: 0")},
    };
    for (const auto &[action, message] : cases)
        EXPECT_TRUE(failure(action).startsWith(message)) << failure(action).toStdString();
    // The document stayed open through the failed opening and saves; the file was left as it was.
    EXPECT_EQ(readFile(path("ok.rtf")), sampleRtf());
    word.SaveAs(path("ok.rtf"));
    EXPECT_EQ(RtfDocument::Load(path("ok.rtf")).RowCount(2), 2);
    word.Close();
    EXPECT_EQ(failure([&] { word.Table(1); }), QStringLiteral("Нет открытого документа"));

    // Replacements keep the document whole, and the size set is for cells only.
    writeFile(path("zakaz.dot"), sampleRtf()); // whatever the file is called
    word.Open(path("zakaz.dot"));
    WordFind find;
    auto replace = [&](const QString &text, const QString &by) { return find.Text = text, find.Replacement = by, word.ReplaceAll(find); };
    word.Table(1).SetCellText(1, 1, "A");
    EXPECT_EQ(replace("#nomer#", "P-1"), 1);
    word.SetSelectionFontSize(13);
    word.Table(1).SetCellText(1, 2, "B");
    EXPECT_EQ(replace("#ITOG#", "C"), 1) << "case does not matter by default";
    EXPECT_EQ(replace("#MainName#", "ООО «Мотор»\r\nг. Тверь"), 2);
    EXPECT_EQ(replace("#MainChief#", "Иванов"), 1);
    EXPECT_EQ(replace("#MainTel#", ""), 1);
    find.MatchWholeWord = true;
    EXPECT_EQ(replace("Твер", "x"), 0);
    find.MatchCase = true, find.MatchWholeWord = false;
    EXPECT_EQ(replace("#mainbank#", "x"), 0);
    word.SaveAs(path("d"));
    const QByteArray rtf = readFile(path("d"));
    for (const QByteArray &part : {QByteArray(R"(\intbl\f0 A\cell)"), QByteArray(R"(\'b9 P-1\par)"), QByteArray(R"(\intbl\f0 {\fs26 B}\cell)"),
                                   QByteArray(R"(: C {\field)") /* a replacement keeps the size of what it replaced */,
                                   R"({\pict\pngblip\picw10\pich10 )" + QByteArray(kPixelPng) + "}",
                                   QByteArray(R"({\*\generator Kelvarion;}{\info{\title \'d1\'f7\'e5\'f2}{\author test}})"),
                                   QByteArray(R"({{{{\uc1\u1048\'c8)") /* nested groups kept around it */, QByteArray(R"(\'bb\line\u1075\'e3)")})
        EXPECT_TRUE(rtf.contains(part)) << part.constData() << "\n" << rtf.constData();
    const RtfDocument reread(rtf);
    EXPECT_EQ(QString("%1 %2 ").arg(reread.TableCount()).arg(reread.RowCount(2)) + reread.CellText(3, 1, 2), "3 1 Иванов");
    // The header's text first.
    EXPECT_TRUE(reread.Text().startsWith(QStringLiteral("ООО «Мотор»\nг. Тверь\n"))
                && reread.Text().contains(QStringLiteral("ООО «Мотор»\nг. Тверь, Счет № P-1\n"))) << reread.Text().toStdString();
}

} // namespace
