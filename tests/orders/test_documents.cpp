// The order documents: the five kinds and one of another name whose template LibreOffice saved again,
// filled from one order and read back through the engine and through LibreOffice; the refusals and
// failures, with what they leave; what the first print fixes, and odd data.

#include "window_fixture.h"

#include "common.h"
#include "order_document.h"
#include "order_fm.h"
#include "rtf_word_processor.h"
#include "select_print_doc_fm.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

namespace {

// The engine behind a front that notes each call; a replacement as "placeholder=value", marked when
// the search is not the plain one. Told to, it fails every replacement.
class NotingWord : public WordProcessor
{
public:
    NotingWord(QStringList &log, bool fail) : m_log(log), m_fail(fail) {}
    void SetVisible(bool v) override { m_log << QString("visible %1").arg(v), m_word.SetVisible(v); }
    void SetDisplayAlerts(int a) override { m_log << QString("alerts %1").arg(a), m_word.SetDisplayAlerts(a); }
    void Open(const QString &file) override { m_log << "open " + file, m_word.Open(file); }
    void SetSelectionFontSize(int p) override { m_log << QString("font %1").arg(p), m_word.SetSelectionFontSize(p); }
    WordTable &Table(int i) override { return m_log << QString("table %1").arg(i), m_word.Table(i); }
    void ClearFindFormatting() override { m_log << "clear", m_word.ClearFindFormatting(); }
    int ReplaceAll(const WordFind &f) override
    {
        const bool plain = f.Forward && f.Wrap == 1 && !f.Format && !f.MatchCase && !f.MatchWholeWord;
        m_log << f.Text + "=" + f.Replacement + (plain ? "" : " (other options)");
        return m_fail ? throw EWordProcessorError("замена") : m_word.ReplaceAll(f);
    }
    void SaveAs(const QString &file) override { m_log << "save " + file, m_word.SaveAs(file); }
    void Close() override { m_log << "close", m_word.Close(); }
    void Quit() override { m_log << "quit", m_word.Quit(); }

private:
    RtfWordProcessor m_word;
    QStringList &m_log;
    bool m_fail;
};

using TLayout = TOrderDocument::TLayout;
// The cells of a line row: its number, then the fields of the line (name, hours, cost, gross, rate,
// VAT, sum) where the layout puts them, -1 for a cell left as the template has it.
QStringList Cells(TLayout layout, int number, const QStringList &line)
{
    static const QMap<TLayout, QList<int>> fields = {
        {TLayout::Short, {0, 1, 2, 6}}, {TLayout::Wide, {0, 1, 2, 3, 4, 5, 6}}, {TLayout::Tax, {0, -1, 1, 2, 3, -1, 4, 5, 6}}};
    QStringList cells = {QString::number(number)};
    for (int field : fields[layout])
        cells << line.value(field);
    return cells;
}

// The rows of a table of a saved document, `columns` cells each, read by the engine.
QList<QStringList> TableRows(const QString &file, int table, int columns)
{
    const RtfDocument doc = RtfDocument::Load(file);
    QList<QStringList> rows(doc.RowCount(table));
    for (int r = 0; r < rows.size(); ++r)
        for (int c = 1; c <= columns; ++c)
            rows[r] << doc.CellText(table, r + 1, c);
    return rows;
}

void Write(const QString &path, const QByteArray &bytes)
{
    QFile::remove(path);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) << path.toStdString();
}
QByteArray Read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Converts files with LibreOffice in one run, into `out`; a failure, or no LibreOffice, fails the test.
bool Soffice(const QStringList &files, const QString &format, const QString &out)
{
    static QTemporaryDir profile;
    QProcess soffice;
    soffice.start("soffice", QStringList{"--headless", "-env:UserInstallation=file://" + profile.path(), "--convert-to", format, "--outdir", out} + files);
    const bool done = soffice.waitForFinished(240000) && soffice.exitCode() == 0;
    EXPECT_TRUE(done) << "soffice: " << soffice.errorString().toStdString() << soffice.readAllStandardError().toStdString();
    return done;
}

class Documents : public WindowTest
{
protected:
    void SetUp() override
    {
        WindowTest::SetUp();
        Exec("update CUST set CUSTNAME = 'ООО \"Автомастер\"', INN = '7701234567', PAY_ACC = '40702810900000012345', "
             "ADDRESS = 'г. Москва, ул. Моторная, д. 5', HOME_PHONE = '+7 495 123-45-67', BANK = 'ПАО Сбербанк', "
             "CORR_ACC = '30101810400000000225', BIK = '044525225', GEN_DIR = 'Петров П. П.', "
             "GLAV_BUH = 'Сидорова С. С.' where ID = 1");
        customer = Insert("insert into CUST (CUSTNAME, ADDRESS, HOME_PHONE, MOBI_PHONE, INN, KPP) values ('Иванов "
                          "Иван', 'г. Тула, ул. Ленина, 1', '8 4872 11-22-33', '+7 900 000-00-00', '7100123456', "
                          "'710001001')");
        const int vehicle = NewVehicle("А123ВС77");
        Exec(QString("update AUTO set VIN = 'XTA21099071234567', DRIVE = '1.6 бензин', COLNAME = 'белый' where ID = %1")
                 .arg(vehicle));
        // Three days ago in the afternoon: the date is printed without its time.
        order = NewOrder(customer, vehicle, 1, "cast('today' as date) - 2.4");
        Exec(QString("update ORDERS set NUM = 'Т-101', COMMENT = 'стук в подвеске' where ID = %1").arg(order));
        date = QDate::currentDate().addDays(-3).toString("dd.MM.yy");
        // A service of 2 norm hours at 1000 ordered for 2.5 hours less 10%, one of 1 hour at 751, and
        // four units of a material at 412.50; the VAT of the second is not whole kopecks.
        const QString line = "insert into %1 values (%2, %3, %4)";
        Exec(line.arg("ORDSERV (IDORDER, IDSERV, OHOURS, DISCOUNT)").arg(order).arg(NewService("Замена масла", 1000, 2)).arg("2.5, 10"));
        Exec(line.arg("ORDSERV (IDORDER, IDSERV, OHOURS)").arg(order).arg(NewService("Диагностика ходовой", 751, 1)).arg(1));
        Exec(line.arg("ORDMAT (IDORDER, IDMAT, OCNT)").arg(order).arg(NewMaterial("Масло 5W-40", 412.5)).arg(4));
        Exec(QString("insert into ORDERS (IDCUST, IDAUTO, NUM) values (%1, %2, 'Б-1')").arg(NewCustomer("Пустой")).arg(vehicle));
        dm->pFIBTransaction1.CommitRetaining();
        Noting();
        journal = Show<TOrderFM>();
        Settle();
        Pick(order);
    }
    void TearDown() override
    {
        TOrderDocument::SetTemplateFolder(QString());
        WordProcessor::InstallFactory({});
        WindowTest::TearDown();
    }

    const QList<QStringList> lines = {{"Замена масла", "2", "1000.00 р. ", "2000.00 р. ", "20%", "187.50 р. ", "1125.00 р. "},
                                  {"Диагностика ходовой", "1", "751.00 р. ", "751.00 р. ", "20%", "125.17 р. ", "751.00 р. "},
                                  {"Масло 5W-40", "4", "412.50 р. ", "1650.00 р. ", "20%", "275.00 р. ", "1650.00 р. "}};
    const QString sum = "3526.00 р. ", sumWords = "Три тысячи пятьсот двадцать шесть руб. 00 коп.";
    const QString vat = "587.67 р. ", vatWords = "Пятьсот восемьдесят семь руб. 67 коп.";

    // Instances of the noting engine from now on.
    void Noting(bool fail = false) { WordProcessor::InstallFactory([this, fail] { return std::make_unique<NotingWord>(log, fail); }); }
    // The values given to some placeholders, "placeholder=value", in their order.
    QStringList Values(const QString &names) const { return log.filter(QRegularExpression("^#(" + names + ")#=")); }
    void Pick(int id)
    {
        journal->frmOrders->actRefresh->Execute();
        ASSERT_TRUE(dm->spOrdersOpen.Locate("ID", id));
    }
    QString Output(const QString &kind, const QString &num = "Т-101") { return dm->DocFolder + kind + num + ".rtf"; }
    // A copy of the templates that a test may spoil.
    QString OwnTemplates()
    {
        const QString folder = home.path() + "/templates/";
        QDir().mkpath(folder);
        for (const TOrderDocument::TKind &k : TOrderDocument::Kinds)
            QFile::copy(QCoreApplication::applicationDirPath() + "/templates/" + k.kind + ".dot", folder + k.kind + ".dot");
        TOrderDocument::SetTemplateFolder(folder);
        return folder;
    }

    int customer = 0, order = 0;
    QString date;
    QStringList log;
    TOrderFM *journal = nullptr;
};

TEST_F(Documents, EachKindFillsItsLayoutAndEveryPlaceholder)
{
    // A kind of no known name is a short one with its lines in the third table; its template is the
    // order form as LibreOffice saves it again, runs split and groups and definitions of its own added.
    const QString folder = OwnTemplates();
    QTemporaryDir resaved;
    QFile::copy(folder + "zakaz.dot", resaved.path() + "/zakaz-lo.rtf");
    ASSERT_TRUE(Soffice({resaved.path() + "/zakaz-lo.rtf"}, "rtf", resaved.path() + "/lo"));
    QFile::copy(resaved.path() + "/lo/zakaz-lo.rtf", folder + "zakaz-lo.dot");
    struct Kind { QString kind; int table; TLayout layout; QString title; };
    const QList<Kind> kinds = {{"zakaz", 3, TLayout::Short, "ЗАЯВКА № Т-101"}, {"zakaz-nar", 3, TLayout::Short, "ЗАКАЗ-НАРЯД № Т-101 от " + date},
                               {"schet", 2, TLayout::Wide, "СЧЁТ НА ОПЛАТУ № Т-101 от " + date},
                               {"schet-fact", 2, TLayout::Tax, "СЧЁТ-ФАКТУРА № Т-101 от " + date},
                               {"act", 3, TLayout::Short, "по заказ-наряду № Т-101 от " + date}, {"zakaz-lo", 3, TLayout::Short, "ЗАЯВКА № Т-101"}};
    const QStringList values = {
        "#itog#=" + sum, "#itogP#=" + sumWords, "#NDSP#=" + vatWords, "#colZ#=3", "#summaZ#=4401.00 р. ", "#NDS#=" + vat,
        "#MainName#=ООО \"Автомастер\"", "#MainINN#=7701234567", "#MainSchet#=40702810900000012345",
        "#MainAddress#=г. Москва, ул. Моторная, д. 5", "#MainTel#=+7 495 123-45-67", "#MainFax#=",
        "#MainBank#=ПАО Сбербанк", "#MainKorChet#=30101810400000000225", "#MainBIK#=044525225", "#MainBank#=ПАО Сбербанк",
        "#MainChief#=Петров П. П.", "#MainBuh#=Сидорова С. С.", "#ZakazData#=Т-101 от " + date, "#data#=" + date,
        "#ClientName#=Иванов Иван", "#ClientAddress#=г. Тула, ул. Ленина, 1", "#ClientINN#=7100123456/710001001",
        "#ClientTel#=8 4872 11-22-33", "#AvtoMarka#=" + Scalar("select MODNAME from MODEL where ID = 1").toString(),
        "#AvtoNomer#=А123ВС77", "#AvtoVIN#=XTA21099071234567", "#AvtoDvig#=1.6 бензин", "#AvtoColor#=белый",
        "#AvtoPrim#=стук в подвеске", "#ZakazNomer#=Т-101", "#nomer#=Т-101", "#nomerZ#=Т-101"};
    QStringList files;
    for (const Kind &k : kinds) {
        SCOPED_TRACE(k.kind.toStdString());
        log.clear();
        journal->Mak_Zakaz(0, k.kind);
        EXPECT_EQ(dialogs.Texts(), QStringList());
        files << Output(k.kind);
        EXPECT_EQ(shell.Opened, QStringList({files.last()}));
        shell.Opened.clear();
        QStringList expected = {"visible 0", "open " + files.last(), "font 13", QString("table %1").arg(k.table)};
        for (const QString &value : values)
            expected << "clear" << value;
        expected << "alerts 0" << "save " + files.last() << "alerts -1" << "close" << "quit";
        EXPECT_EQ(log.join('\n').toStdString(), expected.join('\n').toStdString());

        // The header row stays; a row per line follows, numbered in the table. Services come first, in
        // the procedure's order among themselves.
        const QList<QStringList> rows = TableRows(files.last(), k.table, Cells(k.layout, 0, {}).size());
        ASSERT_EQ(rows.size(), 4);
        EXPECT_NE(rows[0].join(""), "");
        const bool swapped = rows[1].value(1) == lines[1][0];
        EXPECT_EQ(rows.mid(1), QList<QStringList>({Cells(k.layout, 1, lines[swapped]), Cells(k.layout, 2, lines[!swapped]),
                                                   Cells(k.layout, 3, lines[2])}));
    }

    // What a reader sees: no placeholder left, the titles, the lines, the totals in figures and words.
    ASSERT_TRUE(Soffice(files, "txt:Text (encoded):UTF8", resaved.path()));
    QStringList texts;
    for (int i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(files[i].toStdString());
        texts << QString::fromUtf8(Read(resaved.path() + "/" + QFileInfo(files[i]).completeBaseName() + ".txt"));
        EXPECT_FALSE(texts[i].contains(QRegularExpression("#\\w+#"))) << texts[i].toStdString();
        for (const QString &seen : {kinds[i].title, sum.trimmed(), sumWords, vat.trimmed(), vatWords, date,
                                    QString("ООО \"Автомастер\""), QString("Иванов Иван"), lines[0][0], lines[1][0],
                                    lines[2][0], lines[2][6].trimmed()})
            EXPECT_TRUE(texts[i].contains(seen)) << seen.toStdString() << "\n" << texts[i].toStdString();
    }
    EXPECT_TRUE(texts[0].contains(QRegularExpression("Факс:\\s*\\n"))) << "the fax is always blank";
    EXPECT_TRUE(texts[2].contains("Банк получателя: ПАО Сбербанк"));
}

// Each case as in a fresh run. The refusals come before any file is made.
TEST_F(Documents, RefusalsAndFailuresAndWhatTheyLeaveThenTheFirstPrintFixesTheCustomerAndLinesAndOddDataIsRefused)
{
    const QString folder = OwnTemplates();
    const QByteArray good = Read(folder + "zakaz.dot");
    const int bare = NewOrder(0, 0), empty = NewOrder(customer, 0);
    dm->pFIBTransaction1.CommitRetaining();
    const QString copyFailed = TOrderDocument::CopyFailedText + Output("zakaz");
    const QString failed = TOrderDocument::FailedText + "EWordProcessorError ";
    auto older = [&] { QDir().mkpath(dm->DocFolder), Write(Output("zakaz"), "older"); };
    auto nothing = [&] { EXPECT_TRUE(QDir(dm->DocFolder).isEmpty()); };
    // The message is whole, or its beginning when it ends in a blank.
    struct Case { const char *what; std::function<void()> spoil; QString message; bool opened; std::function<void()> check; };
    const QList<Case> cases = {
        {"an empty journal", [&] { Filter(journal->edNum, "нет такого"); }, TOrderDocument::NoOrderText, false, nothing},
        {"an order without a customer", [&] { Pick(bare); }, TOrderDocument::NoCustomerText, false, nothing},
        {"an order without lines", [&] { Pick(empty); }, TOrderDocument::NoLinesText, false, nothing},
        {"a missing template, the older document is deleted first", [&] { QFile::remove(folder + "zakaz.dot"), older(); },
         copyFailed, false, [&] { EXPECT_FALSE(QFileInfo::exists(Output("zakaz"))); }},
        {"a read-only older document survives and opens",
         [&] { older(), QFile::setPermissions(Output("zakaz"), QFile::ReadOwner | QFile::ReadGroup); }, copyFailed, true,
         [&] { EXPECT_EQ(Read(Output("zakaz")), "older"); }},
        {"a folder in place of the document", [&] { QDir().mkpath(Output("zakaz")); }, copyFailed, false, [] {}},
        {"a document folder that cannot be made",
         [&] { QDir(dm->DocFolder).removeRecursively(), Write(dm->DocFolder.chopped(1), "a file"); }, copyFailed, false, [] {}},
        {"too few columns: the row stays, its totals are lost, #colZ# counts it; a placeholder in any case",
         [&] { Write(folder + "zakaz.dot", "{\\rtf1" + QByteArray("\\trowd\\cellx1\\pard\\intbl H\\cell\\row\\pard\\par").repeated(2)
                                               + "\\trowd\\cellx1\\cellx2\\cellx3\\cellx4\\pard\\intbl H\\cell H\\cell H\\cell H\\cell"
                                               + "\\row\\pard #colZ# #ITOG# #summaZ# #NDS#\\par}"); },
         "", true,
         [&] {
             EXPECT_EQ(Values("colZ|itog|summaZ|NDS"),
                       QStringList({"#itog#=0.00 р. ", "#colZ#=3", "#summaZ#=0.00 р. ", "#NDS#=0.00 р. "}));
             EXPECT_FALSE(Read(Output("zakaz")).contains('#'));
             const QList<QStringList> rows = TableRows(Output("zakaz"), 3, 4);
             ASSERT_EQ(rows.size(), 4);
             EXPECT_EQ(QStringList({rows[1][0], rows[2][0], rows[3][0], rows[3][1], rows[3][3]}),
                       QStringList({"1", "2", "3", "Масло 5W-40", "412.50 р. "}));
         }},
        {"no line table: the half-made document is saved and opened", [&] { Write(folder + "zakaz.dot", "{\\rtf1 #itog#}"); },
         failed, true, [&] { EXPECT_EQ(Read(Output("zakaz")), "{\\rtf1 #itog#}"); }},
        {"a failing replacement: the rows written by then are saved", [&] { Noting(true); }, failed + "замена", true,
         [&] { EXPECT_EQ(TableRows(Output("zakaz"), 3, 5).size(), 4); }},
        {"a truncated template", [&] { Write(folder + "zakaz.dot", good.left(good.size() / 2)); }, failed, true, [] {}},
        {"no word processor: the copied template opens as it is",
         [&] { WordProcessor::InstallFactory([]() -> std::unique_ptr<WordProcessor> { throw EWordProcessorError("нет"); }); },
         failed + "нет", true,
         [&] {
             EXPECT_EQ(Read(Output("zakaz")), good);
             EXPECT_TRUE(dm->spRequisitsOpen.Active()) << "left open when no instance was made";
         }},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        dialogs.Clear(), shell.Opened.clear(), log.clear();
        Write(folder + "zakaz.dot", good);
        c.spoil();
        journal->Mak_Zakaz(order, "zakaz");
        const QString said = dialogs.Texts().join('\n');
        EXPECT_EQ(dialogs.Texts().size(), c.message.isEmpty() ? 0 : 1) << said.toStdString();
        EXPECT_TRUE(c.message.endsWith(' ') ? said.startsWith(c.message) : said == c.message) << said.toStdString();
        EXPECT_EQ(shell.Opened, c.opened ? QStringList({Output("zakaz")}) : QStringList());
        c.check();
        Noting();
        dm->spRequisitsOpen.Close(), dm->spOrdMatServOpen.Close(), dm->spCustOpen2.Close();
        QFile::remove(dm->DocFolder.chopped(1));
        QDir(dm->DocFolder).removeRecursively();
        Filter(journal->edNum, "");
        Pick(order);
    }

    // Then the first print of the run, without a KPP: the joined tax number is null.
    dialogs.Clear();
    Exec(QString("update CUST set KPP = null where ID = %1").arg(customer));
    journal->Mak_Zakaz(0, "zakaz");
    EXPECT_EQ(dialogs.Texts(), QStringList());

    // Another order in the same run, in other currency marks: its number, but the customer and lines
    // of the first print.
    Pick(Scalar("select ID from ORDERS where NUM = 'Б-1'").toInt());
    log.clear();
    const TCurrencyWords saved = CurrencyWords();
    CurrencyWords() = {"грн.", "гривен", "коп."};
    journal->Mak_Zakaz(0, "act");
    CurrencyWords() = saved;
    EXPECT_EQ(Values("itog|itogP|ClientName|ClientINN|nomer"),
              QStringList({"#itog#=3526.00 грн. ", "#itogP#=Три тысячи пятьсот двадцать шесть гривен 00 коп.",
                           "#ClientName#=Иванов Иван", "#ClientINN#=", "#nomer#=Б-1"}));
    const QList<QStringList> rows = TableRows(Output("act", "Б-1"), 3, 5);
    EXPECT_EQ(rows.size(), 4);
    EXPECT_TRUE(rows.value(1).value(3).endsWith(".00 грн. "));

    // A name longer than the procedure's column: the database refuses, no document is made.
    dialogs.Clear(), shell.Opened.clear();
    const int other = NewOrder(customer, 0);
    Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, %2)").arg(other).arg(NewService("Замена переднего левого амортизатора в сборе")));
    // As in a fresh run: nothing else closes the lines that the first print opened.
    dm->spOrdMatServOpen.Close();
    Pick(other);
    OnModal<TSelectPrintDocFM>([&] { journal->actPrint->trigger(); }, {[](TSelectPrintDocFM *dialog) {
        dialog->AdvGlowButton1->click();
    }});
    ASSERT_EQ(dialogs.Texts().size(), 1);
    EXPECT_TRUE(dialogs.Texts()[0].contains("truncation")) << dialogs.Texts()[0].toStdString();
    EXPECT_EQ(shell.Opened, QStringList());
}

TEST(DocumentValues, RoundingAndNumbers)
{
    // Ties go to the even neighbour, not away from zero; the VAT is whole kopecks first.
    const QList<std::tuple<double, qint64, qint64>> amounts = {{0.00005, 0, 0}, {0.00025, 2, 0}, {0.125, 1250, 1200},
        {0.375, 3750, 3800}, {587.66666412353516, 5876667, 5876700}, {3526, 35260000, 35260000}};
    for (const auto &[value, sum, vat] : amounts) {
        EXPECT_EQ(TOrderDocument::SumAmount(value), sum) << value;
        EXPECT_EQ(TOrderDocument::VatAmount(value), vat) << value;
    }
    const QList<QPair<double, QString>> floats = {{2, "2"}, {1.5, "1.5"}, {double(1.1f), "1.1"}, {0, "0"},
                                                  {1000000, "1000000"}, {double(1.0f / 3), "0.333333"}};
    for (const auto &[value, text] : floats)
        EXPECT_EQ(TOrderDocument::FloatText(value), text) << value;
    EXPECT_EQ(TOrderDocument::OutputPath("/d/", "schet", "P-80012"), "/d/schetP-80012.rtf");
}

} // namespace
