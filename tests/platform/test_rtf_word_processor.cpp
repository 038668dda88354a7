// The word processor of order documents on files: opening, the operations of a filled order, saving,
// failures; and what LibreOffice reads in the files it writes, also in a file LibreOffice wrote first.
#include "rtf_samples.h"
#include "rtf_word_processor.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

const QString kSource = QStringLiteral(KELVARION_SOURCE_DIR);

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString failure(const std::function<void()> &action)
{
    try {
        action();
    } catch (const EWordProcessorError &e) {
        return e.Message();
    }
    return QStringLiteral("(no failure)");
}

// Converts the files with LibreOffice into outDir, with a profile beside it; format as --convert-to takes it.
void convert(const QStringList &files, const QString &format, const QString &outDir)
{
    ASSERT_TRUE(QFile::exists(QStringLiteral("/usr/bin/soffice"))) << "LibreOffice is installed by scripts/deps.sh";
    QProcess soffice;
    soffice.start(QStringLiteral("soffice"),
                  QStringList{QStringLiteral("--headless"),
                              QStringLiteral("-env:UserInstallation=file://%1/lo-profile").arg(QFileInfo(outDir).absolutePath()),
                              QStringLiteral("--convert-to"), format, QStringLiteral("--outdir"), outDir}
                      + files);
    ASSERT_TRUE(soffice.waitForFinished(180000)) << "LibreOffice did not finish";
    ASSERT_EQ(soffice.exitCode(), 0) << soffice.readAllStandardError().constData();
}

QString convertedText(const QString &outDir, const QString &file)
{
    return QString::fromUtf8(readFile(QDir(outDir).filePath(QFileInfo(file).completeBaseName() + ".txt")));
}

struct Line
{
    QString name, hours, cost, sum;
};

const Line kLines[] = {{QStringLiteral("Замена масла"), "1.5", QStringLiteral("1500.00 р. "), QStringLiteral("2250.00 р. ")},
                       {QStringLiteral("Фильтр {масляный}"), "2", QStringLiteral("300.00 р. "), QStringLiteral("600.00 р. ")},
                       {QStringLiteral("Развал-схождение\\угол"), "1", QStringLiteral("900.00 р. "), QStringLiteral("900.00 р. ")}};

// What an order document does with the word processor: the lines into the table, then placeholders.
void fillOrder(WordProcessor &word, const QString &path, int table, int columns)
{
    word.SetVisible(false);
    word.Open(path);
    word.SetSelectionFontSize(13);
    WordTable &lines = word.Table(table);
    for (const Line &line : kLines) {
        lines.AddRow();
        const int row = lines.RowCount();
        const QString cells[] = {QString::number(row - 1), line.name, line.hours, line.cost, line.sum};
        for (int column = 1; column <= std::min(columns, 5); ++column)
            lines.SetCellText(row, column, cells[column - 1]);
    }
    const std::pair<QString, QString> values[] = {{"#MainName#", QStringLiteral("ООО «Мотор»")},
                                                  {"#itog#", QStringLiteral("3750.00 р. ")},
                                                  {"#nomer#", QStringLiteral("P-80012")},
                                                  {"#MainChief#", QStringLiteral("Иванов И. И.")},
                                                  {"#MainTel#", QStringLiteral("+7 (4822) 00-00-00\r\nдоб. 5")},
                                                  {"#MainBank#", QStringLiteral("Банк «Тверь»")}};
    for (const auto &[placeholder, value] : values) {
        word.ClearFindFormatting();
        WordFind find;
        find.Text = placeholder;
        find.Replacement = value;
        word.ReplaceAll(find);
    }
    word.SetDisplayAlerts(0);
    word.SaveAs(path);
    word.SetDisplayAlerts(-1);
    word.Close();
    word.Quit();
}

class RtfWordProcessorTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return dir.filePath(name); }
    QTemporaryDir dir;
    RtfWordProcessor word;
};

TEST_F(RtfWordProcessorTest, OpensRtfWhateverTheFileIsCalled)
{
    for (const QString &name : {QStringLiteral("zakaz.dot"), QStringLiteral("zakazP-1.rtf"), QStringLiteral("док")}) {
        writeFile(path(name), sampleRtf());
        word.Open(path(name));
        EXPECT_EQ(word.Table(3).CellText(1, 2), QStringLiteral("#MainChief#")) << name.toStdString();
    }
}

TEST_F(RtfWordProcessorTest, FailuresAreRussianMessages)
{
    writeFile(path("zip.rtf"), "PK\x03\x04...");
    writeFile(path("cut.rtf"), sampleRtf().left(900));
    writeFile(path("ok.rtf"), sampleRtf());
    const std::pair<std::function<void()>, QString> cases[] = {
        {[&] { word.Table(1); }, QStringLiteral("Нет открытого документа")},
        {[&] { word.Open(path("none.rtf")); }, QStringLiteral("Файл «%1» не найден").arg(path("none.rtf"))},
        {[&] { word.Open(dir.path()); }, QStringLiteral("Файл «%1» не найден").arg(dir.path())},
        {[&] { word.Open(path("zip.rtf")); }, QStringLiteral("Файл «%1» не является документом RTF").arg(path("zip.rtf"))},
        {[&] { word.Open(path("cut.rtf")); },
         QStringLiteral("Документ RTF «%1» повреждён: файл обрезан, не закрыто групп: 1").arg(path("cut.rtf"))},
        {[&] { word.Open(path("ok.rtf")); word.Table(4); }, QStringLiteral("В документе нет таблицы номер 4 (таблиц в нём: 3)")},
        {[&] { word.Table(0); }, QStringLiteral("В документе нет таблицы номер 0 (таблиц в нём: 3)")},
        {[&] { word.Table(2).SetCellText(2, 1, "x"); }, QStringLiteral("В таблице 2 нет строки номер 2 (строк в ней: 1)")},
        {[&] { word.Table(2).SetCellText(1, 9, "x"); },
         QStringLiteral("В строке 1 таблицы 2 нет столбца номер 9 (столбцов в ней: 3)")},
        {[&] { word.SaveAs(path("missing/folder/x.rtf")); },
         QStringLiteral("Не удалось сохранить документ в файл «%1»: ").arg(path("missing/folder/x.rtf"))},
        {[&] { WordFind find; find.Text = "#"; find.MatchWildcards = true; word.ReplaceAll(find); },
         QStringLiteral("Поиск по шаблону, по звучанию и по словоформам не поддерживается")},
        {[&] { word.SetSelectionFontSize(0); }, QStringLiteral("Недопустимый размер шрифта: 0")},
        {[&] { word.Close(); word.Table(1); }, QStringLiteral("Нет открытого документа")},
    };
    for (const auto &[action, message] : cases)
        EXPECT_TRUE(failure(action).startsWith(message)) << failure(action).toStdString();
}

TEST_F(RtfWordProcessorTest, AFailedOpenKeepsTheDocumentAndAFailedSaveTheFile)
{
    writeFile(path("ok.rtf"), sampleRtf());
    word.Open(path("ok.rtf"));
    EXPECT_THROW(word.Open(path("none.rtf")), EWordProcessorError);
    word.Table(2).AddRow();
    for (const QString &target : {path("ok.rtf/x.rtf"), dir.path()})
        EXPECT_TRUE(failure([&] { word.SaveAs(target); }).startsWith(QStringLiteral("Не удалось сохранить документ")));
    EXPECT_EQ(readFile(path("ok.rtf")), sampleRtf());
    word.SaveAs(path("ok.rtf"));
    EXPECT_EQ(RtfDocument::Load(path("ok.rtf")).RowCount(2), 2);
}

TEST_F(RtfWordProcessorTest, TextWrittenAfterTheFontSizeIsSetHasIt)
{
    writeFile(path("d.rtf"), sampleRtf());
    word.Open(path("d.rtf"));
    WordFind find;
    find.Text = "#nomer#";
    find.Replacement = "P-1";
    word.Table(1).SetCellText(1, 1, "A");
    EXPECT_EQ(word.ReplaceAll(find), 1);
    word.SetSelectionFontSize(13);
    word.Table(1).SetCellText(1, 2, "B");
    find.Text = "#ITOG#"; // case does not matter by default
    find.Replacement = "C";
    EXPECT_EQ(word.ReplaceAll(find), 1);
    find.Text = "#mainchief#";
    find.MatchCase = true;
    EXPECT_EQ(word.ReplaceAll(find), 0);
    word.SaveAs(path("d.rtf"));
    const QByteArray rtf = readFile(path("d.rtf"));
    EXPECT_TRUE(rtf.contains(R"(\intbl\f0 A\cell)"));
    EXPECT_TRUE(rtf.contains(R"(\'b9 P-1\par)"));
    EXPECT_TRUE(rtf.contains(R"(\intbl\f0 {\fs26 B}\cell)"));
    EXPECT_TRUE(rtf.contains(R"(: C {\field)")) << "a replacement keeps the size of what it replaced";
}

TEST_F(RtfWordProcessorTest, CreateGivesTheEngineUnlessAFactoryIsInstalled)
{
    EXPECT_NE(dynamic_cast<RtfWordProcessor *>(WordProcessor::Create().get()), nullptr);
    WordProcessor::InstallFactory([]() -> std::unique_ptr<WordProcessor> { throw EWordProcessorError("нет"); });
    EXPECT_THROW(WordProcessor::Create(), EWordProcessorError);
    WordProcessor::InstallFactory({});
    EXPECT_NE(dynamic_cast<RtfWordProcessor *>(WordProcessor::Create().get()), nullptr);
    word.SetVisible(true);
    word.SetDisplayAlerts(0);
    EXPECT_TRUE(word.Visible());
    EXPECT_EQ(word.DisplayAlerts(), 0);
}

// The templates of the program open, are written back unchanged and have their line table, with one
// header row, where the documents look for it.
TEST(RtfTemplates, HaveTheirLineTable)
{
    const std::pair<QString, int> templates[] = {{"zakaz", 3}, {"zakaz-nar", 3}, {"schet", 2}, {"schet-fact", 2}, {"act", 3}};
    for (const auto &[kind, table] : templates) {
        const QString file = kSource + "/resources/templates/" + kind + ".dot";
        const RtfDocument doc = RtfDocument::Load(file);
        EXPECT_EQ(doc.ToRtf(), readFile(file)) << kind.toStdString();
        ASSERT_GE(doc.TableCount(), table) << kind.toStdString();
        EXPECT_EQ(doc.RowCount(table), 1) << kind.toStdString();
    }
}

// LibreOffice reads what the engine wrote: the sample, a template and the sample as LibreOffice
// itself saved it (runs split, groups and its own definitions added), each filled as an order.
TEST_F(RtfWordProcessorTest, LibreOfficeReadsTheFilledDocuments)
{
    writeFile(path("sample.rtf"), sampleRtf());
    QDir(dir.path()).mkdir("lo");
    convert({path("sample.rtf")}, QStringLiteral("rtf"), path("lo"));
    const QString resaved = path("lo/sample.rtf");
    ASSERT_TRUE(readFile(resaved).contains("LibreOffice"));
    {
        const RtfDocument doc = RtfDocument::Load(resaved);
        ASSERT_EQ(doc.TableCount(), 3);
        EXPECT_EQ(doc.RowCount(2), 1);
        EXPECT_EQ(doc.CellText(2, 1, 2), QStringLiteral("Наименование"));
    }
    ASSERT_TRUE(QFile::copy(kSource + "/resources/templates/schet.dot", path("schet.rtf")));
    fillOrder(word, path("sample.rtf"), 2, 3);
    fillOrder(word, resaved, 2, 3);
    fillOrder(word, path("schet.rtf"), 2, 8);

    convert({path("sample.rtf"), resaved, path("schet.rtf")}, QStringLiteral("txt:Text (encoded):UTF8"), path("txt"));
    const QString sample = convertedText(path("txt"), path("sample.rtf"));
    const QString relo = convertedText(path("txt"), resaved);
    const QString schet = convertedText(path("txt"), path("schet.rtf"));
    for (const QString &text : {sample, relo}) {
        EXPECT_TRUE(text.contains(QStringLiteral("ООО «Мотор», Счет № P-80012\n"))) << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("Банк\nБанк «Тверь»"))) << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("Наименование\nСумма\n1\nЗамена масла\n1.5\n2\nФильтр {масляный}\n2\n3\n"
                                                 "Развал-схождение\\угол\n1\n")))
            << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("+7 (4822) 00-00-00\nдоб. 5"))) << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("Итого: 3750.00 р. "))) << text.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("Иванов И. И."))) << text.toStdString();
        EXPECT_FALSE(text.contains('#')) << text.toStdString();
    }
    EXPECT_TRUE(schet.contains(QStringLiteral("3\nРазвал-схождение\\угол\n1\n900.00 р. \n900.00 р. \n"))) << schet.toStdString();
    EXPECT_TRUE(schet.contains(QStringLiteral("Банк получателя: Банк «Тверь»"))) << schet.toStdString();
    EXPECT_TRUE(schet.contains(QStringLiteral("Получатель: ООО «Мотор»"))) << schet.toStdString();
    EXPECT_TRUE(schet.contains(QStringLiteral("СЧЁТ НА ОПЛАТУ № P-80012 от"))) << schet.toStdString();
}

} // namespace
