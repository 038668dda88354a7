// One order document of 100 lines from its template to the saved file, as the orders journal makes it:
// the template copied to the output, opened, the line table filled (a row added and 8 cells written
// per line), the 33 placeholders replaced, saved. The template is the program's invoice (schet.dot,
// line table 2); the time is the wall time of the whole road.
#include "bench_support.h"
#include "word_processor.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

namespace {

constexpr int kLines = 100;

const char *const kPlaceholders[] = {
    "#itog#", "#itogP#", "#NDSP#", "#colZ#", "#summaZ#", "#NDS#", "#MainName#", "#MainINN#", "#MainSchet#",
    "#MainAddress#", "#MainTel#", "#MainFax#", "#MainBank#", "#MainKorChet#", "#MainBIK#", "#MainBank#",
    "#MainChief#", "#MainBuh#", "#ZakazData#", "#data#", "#ClientName#", "#ClientAddress#", "#ClientINN#",
    "#ClientTel#", "#AvtoMarka#", "#AvtoNomer#", "#AvtoVIN#", "#AvtoDvig#", "#AvtoColor#", "#AvtoPrim#",
    "#ZakazNomer#", "#nomer#", "#nomerZ#"};
static_assert(std::size(kPlaceholders) == 33);

QString templatePath()
{
    return QStringLiteral(KELVARION_SOURCE_DIR "/resources/templates/schet.dot");
}

// Returns the size of the saved file.
qint64 makeDocument(const QString &output)
{
    QFile::remove(output);
    if (!QFile::copy(templatePath(), output))
        throw EWordProcessorError(QStringLiteral("Не удалось скопировать шаблон ") + output);
    std::unique_ptr<WordProcessor> word = WordProcessor::Create();
    word->SetVisible(false);
    word->Open(output);
    word->SetSelectionFontSize(13);
    WordTable &table = word->Table(2);
    for (int line = 1; line <= kLines; ++line) {
        table.AddRow();
        const int row = table.RowCount();
        table.SetCellText(row, 1, QString::number(row - 1));
        table.SetCellText(row, 2, QStringLiteral("Замена масла в двигателе %1").arg(line));
        table.SetCellText(row, 3, QStringLiteral("1.5"));
        table.SetCellText(row, 4, QStringLiteral("1500.00 р. "));
        table.SetCellText(row, 5, QStringLiteral("2250.00 р. "));
        table.SetCellText(row, 6, QStringLiteral("20%"));
        table.SetCellText(row, 7, QStringLiteral("375.00 р. "));
        table.SetCellText(row, 8, QStringLiteral("2250.00 р. "));
    }
    for (const char *placeholder : kPlaceholders) {
        word->ClearFindFormatting();
        WordFind find;
        find.Text = QString::fromLatin1(placeholder);
        find.Replacement = QStringLiteral("Значение %1").arg(placeholder);
        word->ReplaceAll(find);
    }
    word->SetDisplayAlerts(0);
    word->SaveAs(output);
    word->SetDisplayAlerts(-1);
    word->Close();
    word->Quit();
    return QFileInfo(output).size();
}

void BM_OrderDocument(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString output = QDir(dir.path()).filePath(QStringLiteral("schetP-80012.rtf"));
    qint64 size = 0;
    for (auto _ : state)
        size = makeDocument(output);
    state.counters["file_kB"] = double(size) / 1024;
    state.counters["lines"] = kLines;
}

} // namespace

BENCHMARK(BM_OrderDocument)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char **argv)
{
    if (!QFile::exists(templatePath())) {
        std::fprintf(stderr, "no template at %s\n", qPrintable(templatePath()));
        return 1;
    }
    return runBenchmarks(argc, argv);
}
