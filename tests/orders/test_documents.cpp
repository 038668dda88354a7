// The order documents: the five kinds filled from one order and read back through the engine and through
// LibreOffice, the refusals before any file is made, broken templates and outputs, odd data, several
// kinds in one go, and a template that LibreOffice saved again.

#include "orders_fixture.h"

#include "common.h"
#include "order_document.h"
#include "order_fm.h"
#include "select_print_doc_fm.h"
#include "word_processor.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <deque>
#include <optional>

namespace {

// Drives the real engine and writes down every call the document routine makes.
class RecordingWord : public WordProcessor
{
public:
    RecordingWord(std::unique_ptr<WordProcessor> real, QStringList &log) : m_real(std::move(real)), m_log(log) {}

    void SetVisible(bool visible) override
    {
        m_log << QString("visible %1").arg(visible);
        m_real->SetVisible(visible);
    }
    void SetDisplayAlerts(int alerts) override
    {
        m_log << QString("alerts %1").arg(alerts);
        m_real->SetDisplayAlerts(alerts);
    }
    void Open(const QString &fileName) override
    {
        m_log << "open " + fileName;
        m_real->Open(fileName);
    }
    void SetSelectionFontSize(int points) override
    {
        m_log << QString("font %1").arg(points);
        m_real->SetSelectionFontSize(points);
    }
    WordTable &Table(int index) override
    {
        m_log << QString("table %1").arg(index);
        return m_real->Table(index);
    }
    void ClearFindFormatting() override
    {
        m_log << "clear";
        m_real->ClearFindFormatting();
    }
    int ReplaceAll(const WordFind &f) override
    {
        const WordFind plain;
        const bool asTold = f.Forward == plain.Forward && f.Wrap == plain.Wrap && f.Format == plain.Format
                            && f.MatchCase == plain.MatchCase && f.MatchWholeWord == plain.MatchWholeWord
                            && f.MatchWildcards == plain.MatchWildcards && f.MatchSoundsLike == plain.MatchSoundsLike
                            && f.MatchAllWordForms == plain.MatchAllWordForms;
        const int count = m_real->ReplaceAll(f);
        m_log << QString("%1=%2 (%3%4)").arg(f.Text, f.Replacement).arg(count).arg(asTold ? "" : ", other options");
        return count;
    }
    void SaveAs(const QString &fileName) override
    {
        m_log << "save " + fileName;
        m_real->SaveAs(fileName);
    }
    void Close() override
    {
        m_log << "close";
        m_real->Close();
    }
    void Quit() override
    {
        m_log << "quit";
        m_real->Quit();
    }

private:
    std::unique_ptr<WordProcessor> m_real;
    QStringList &m_log;
};

// Real engine instances made ahead, each handed out wrapped in a recorder.
struct Recorder
{
    explicit Recorder(int instances)
    {
        WordProcessor::InstallFactory({});
        for (int i = 0; i < instances; ++i)
            reals.push_back(WordProcessor::Create());
        WordProcessor::InstallFactory([this]() -> std::unique_ptr<WordProcessor> {
            if (reals.empty())
                throw EWordProcessorError("no instance left");
            auto real = std::move(reals.front());
            reals.pop_front();
            return std::make_unique<RecordingWord>(std::move(real), log);
        });
    }
    ~Recorder() { WordProcessor::InstallFactory({}); }
    // The replacements only, "placeholder=value (count)".
    QStringList Replacements() const { return log.filter(QRegularExpression("^#")); }
    // The values given to some placeholders, "placeholder=value", in their order.
    QStringList Values(const QString &names) const
    {
        QStringList values = Replacements().filter(QRegularExpression("^#(" + names + ")#="));
        for (QString &value : values)
            value.remove(QRegularExpression(" \\(\\d+\\)$"));
        return values;
    }

    std::deque<std::unique_ptr<WordProcessor>> reals;
    QStringList log;
};

struct DocLine
{
    QString name, hours, cost, gross, rate, vat, sum;
};

// The cells of a line row in a layout; the line number comes first.
QStringList Cells(TOrderDocument::TLayout layout, int number, const DocLine &l)
{
    const QString n = QString::number(number);
    switch (layout) {
    case TOrderDocument::TLayout::Short:
        return {n, l.name, l.hours, l.cost, l.sum};
    case TOrderDocument::TLayout::Wide:
        return {n, l.name, l.hours, l.cost, l.gross, l.rate, l.vat, l.sum};
    case TOrderDocument::TLayout::Tax:
        return {n, l.name, "", l.hours, l.cost, l.gross, "", l.rate, l.vat, l.sum};
    }
    return {};
}
int Columns(TOrderDocument::TLayout layout)
{
    return Cells(layout, 0, {}).size();
}

// The rows of a table of a saved document, `columns` cells each, read by the engine.
QList<QStringList> TableRows(const QString &file, int table, int columns)
{
    WordProcessor::InstallFactory({});
    QList<QStringList> rows;
    auto word = WordProcessor::Create();
    word->Open(file);
    WordTable &t = word->Table(table);
    for (int r = 1; r <= t.RowCount(); ++r) {
        QStringList cells;
        for (int c = 1; c <= columns; ++c)
            cells << t.CellText(r, c);
        rows << cells;
    }
    word->Close();
    word->Quit();
    return rows;
}

// Runs LibreOffice on files; fails the test when it is not installed.
bool Soffice(const QStringList &arguments)
{
    if (QStandardPaths::findExecutable("soffice").isEmpty()) {
        ADD_FAILURE() << "LibreOffice (soffice) is not installed";
        return false;
    }
    static QTemporaryDir profile;
    QProcess process;
    process.start("soffice", QStringList{"--headless", "-env:UserInstallation=file://" + profile.path()} + arguments);
    const bool done = process.waitForFinished(240000) && process.exitCode() == 0;
    EXPECT_TRUE(done) << process.readAllStandardError().toStdString();
    return done;
}

// What a reader sees in each document: LibreOffice's plain text of it.
QStringList ReaderTexts(const QStringList &files)
{
    QTemporaryDir out;
    QStringList texts;
    if (!Soffice(QStringList{"--convert-to", "txt:Text (encoded):UTF8", "--outdir", out.path()} + files))
        return QStringList(files.size(), QString());
    for (const QString &file : files) {
        QFile text(out.path() + "/" + QFileInfo(file).completeBaseName() + ".txt");
        EXPECT_TRUE(text.open(QIODevice::ReadOnly)) << file.toStdString();
        texts << QString::fromUtf8(text.readAll());
    }
    return texts;
}

QStringList Leftovers(const QString &text)
{
    QStringList found;
    for (const auto &match : QRegularExpression("#\\w+#").globalMatch(text))
        found << match.captured();
    return found;
}

class Documents : public OrdersTest
{
protected:
    void SetUp() override
    {
        OrdersTest::SetUp();
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
        AddLines(order);
        Exec(QString("insert into ORDERS (IDCUST, IDAUTO, NUM) values (%1, %2, 'Б-1')").arg(NewCustomer("Пустой")).arg(vehicle));
        dm->pFIBTransaction1.CommitRetaining();
        journal = Show<TOrderFM>();
        Settle();
        Pick(order);
    }
    void TearDown() override
    {
        TOrderDocument::SetTemplateFolder(QString());
        WordProcessor::InstallFactory({});
        OrdersTest::TearDown();
    }

    // A service of 2 norm hours at 1000 ordered for 2.5 hours less 10%, one of 1 hour at 751, and four
    // units of a material at 412.50; the VAT of the second is not whole kopecks.
    void AddLines(int id)
    {
        Exec(QString("insert into ORDSERV (IDORDER, IDSERV, OHOURS, DISCOUNT) values (%1, %2, 2.5, 10)")
                 .arg(id)
                 .arg(NewService("Замена масла", 1000, 2)));
        Exec(QString("insert into ORDSERV (IDORDER, IDSERV, OHOURS) values (%1, %2, 1)").arg(id).arg(NewService("Диагностика ходовой", 751, 1)));
        Exec(QString("insert into ORDMAT (IDORDER, IDMAT, OCNT) values (%1, %2, 4)").arg(id).arg(NewMaterial("Масло 5W-40", 412.5)));
    }
    const QList<DocLine> lines = {
        {"Замена масла", "2", "1000.00 р. ", "2000.00 р. ", "20%", "187.50 р. ", "1125.00 р. "},
        {"Диагностика ходовой", "1", "751.00 р. ", "751.00 р. ", "20%", "125.17 р. ", "751.00 р. "},
        {"Масло 5W-40", "4", "412.50 р. ", "1650.00 р. ", "20%", "275.00 р. ", "1650.00 р. "},
    };
    const QString sum = "3526.00 р. ", sumWords = "Три тысячи пятьсот двадцать шесть руб. 00 коп.";
    const QString vat = "587.67 р. ", vatWords = "Пятьсот восемьдесят семь руб. 67 коп.";

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
    static void Write(const QString &path, const QByteArray &bytes)
    {
        QFile::remove(path);
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    static QByteArray Read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // A template of tables with one header row of the given widths in columns, then `text`.
    static QByteArray Template(const QList<int> &tables, const QString &text)
    {
        QByteArray rtf = "{\\rtf1\\ansi\\ansicpg1251\\deff0{\\fonttbl{\\f0\\froman\\fcharset204 Times New Roman;}}\n";
        for (int columns : tables) {
            rtf += "\\trowd\\trgaph57";
            for (int c = 1; c <= columns; ++c)
                rtf += "\\clbrdrt\\brdrs\\clbrdrl\\brdrs\\clbrdrb\\brdrs\\clbrdrr\\brdrs\\cellx" + QByteArray::number(c * 1500);
            rtf += "\n";
            for (int c = 1; c <= columns; ++c)
                rtf += "\\pard\\intbl H" + QByteArray::number(c) + "\\cell\n";
            rtf += "\\row\n\\pard\\par\n";
        }
        return rtf + "\\pard " + text.toLatin1() + "\\par\n}\n";
    }

    int customer = 0, order = 0;
    QString date;
    TOrderFM *journal = nullptr;
};

TEST_F(Documents, EachKindFillsItsLayoutAndEveryPlaceholder)
{
    const QString shopRow = "Петров П. П.";
    QStringList files;
    for (const TOrderDocument::TKind &k : TOrderDocument::Kinds) {
        SCOPED_TRACE(k.kind);
        Recorder word(1);
        journal->Mak_Zakaz(0, k.kind);
        EXPECT_EQ(dialogs.Texts(), QStringList());
        const QString file = Output(k.kind);
        files << file;
        EXPECT_EQ(shell.Opened, QStringList({file}));
        shell.Opened.clear();

        // The calls in their order, the replacements with the plain search each.
        const QString model = Scalar("select MODNAME from MODEL where ID = 1").toString();
        QStringList expected = {"visible 0", "open " + file, "font 13", QString("table %1").arg(k.lineTable)};
        const QList<QPair<QString, QString>> values = {
            {"#itog#", sum}, {"#itogP#", sumWords}, {"#NDSP#", vatWords}, {"#colZ#", "3"}, {"#summaZ#", "4401.00 р. "},
            {"#NDS#", vat}, {"#MainName#", "ООО \"Автомастер\""}, {"#MainINN#", "7701234567"},
            {"#MainSchet#", "40702810900000012345"}, {"#MainAddress#", "г. Москва, ул. Моторная, д. 5"},
            {"#MainTel#", "+7 495 123-45-67"}, {"#MainFax#", ""}, {"#MainBank#", "ПАО Сбербанк"},
            {"#MainKorChet#", "30101810400000000225"}, {"#MainBIK#", "044525225"}, {"#MainBank#", "ПАО Сбербанк"},
            {"#MainChief#", shopRow}, {"#MainBuh#", "Сидорова С. С."}, {"#ZakazData#", "Т-101 от " + date},
            {"#data#", date}, {"#ClientName#", "Иванов Иван"}, {"#ClientAddress#", "г. Тула, ул. Ленина, 1"},
            {"#ClientINN#", "7100123456/710001001"}, {"#ClientTel#", "8 4872 11-22-33"}, {"#AvtoMarka#", model},
            {"#AvtoNomer#", "А123ВС77"}, {"#AvtoVIN#", "XTA21099071234567"}, {"#AvtoDvig#", "1.6 бензин"},
            {"#AvtoColor#", "белый"}, {"#AvtoPrim#", "стук в подвеске"}, {"#ZakazNomer#", "Т-101"},
            {"#nomer#", "Т-101"}, {"#nomerZ#", "Т-101"}};
        QStringList replaced = word.Replacements();
        ASSERT_EQ(replaced.size(), 33);
        for (int i = 0; i < values.size(); ++i) {
            EXPECT_TRUE(replaced[i].startsWith(values[i].first + "=" + values[i].second + " (")) << replaced[i].toStdString();
            EXPECT_FALSE(replaced[i].contains("other options")) << replaced[i].toStdString();
            expected << "clear" << replaced[i];
        }
        // The tax invoice carries no bank details.
        EXPECT_EQ(replaced[12].endsWith("(0)"), k.layout == TOrderDocument::TLayout::Tax) << replaced[12].toStdString();
        EXPECT_TRUE(replaced[15].endsWith("(0)")) << "the second time finds nothing";
        expected << "alerts 0" << "save " + file << "alerts -1" << "close" << "quit";
        EXPECT_EQ(word.log, expected);

        // The line table: its header, then one row per line with the line numbers of the table.
        const QList<QStringList> rows = TableRows(file, k.lineTable, Columns(k.layout));
        ASSERT_EQ(rows.size(), 4);
        QList<QStringList> got = rows.mid(1), want;
        for (int i = 0; i < 3; ++i)
            want << Cells(k.layout, i + 1, lines[i]);
        // Services come first; their order among themselves is the procedure's.
        if (got[0].value(1) != want[0][1])
            std::swap(want[0], want[1]), want[0][0] = "1", want[1][0] = "2";
        EXPECT_EQ(got, want);
        EXPECT_NE(rows[0].join(""), "") << "the header row stays";
    }

    // What a reader sees: no placeholder left, the lines, the totals in figures and words, the titles.
    const QStringList titles = {"ЗАЯВКА № Т-101", "ЗАКАЗ-НАРЯД № Т-101 от " + date, "СЧЁТ НА ОПЛАТУ № Т-101 от " + date,
                                "СЧЁТ-ФАКТУРА № Т-101 от " + date, "по заказ-наряду № Т-101 от " + date};
    const QStringList texts = ReaderTexts(files);
    for (int i = 0; i < files.size(); ++i) {
        SCOPED_TRACE(files[i].toStdString());
        const QString &text = texts[i];
        EXPECT_EQ(Leftovers(text), QStringList());
        for (const QString &seen : {titles[i], sum.trimmed(), sumWords, vat.trimmed(), vatWords, date,
                                    QString("ООО \"Автомастер\""), QString("Иванов Иван"), lines[0].name, lines[1].name,
                                    lines[2].name, lines[2].sum.trimmed()})
            EXPECT_TRUE(text.contains(seen)) << seen.toStdString() << "\n" << text.toStdString();
    }
    EXPECT_TRUE(texts[0].contains(QRegularExpression("Факс:\\s*\\n"))) << "the fax is always blank";
    EXPECT_TRUE(texts[2].contains("Банк получателя: ПАО Сбербанк"));
}

TEST_F(Documents, RefusalsBeforeAnyFileIsMade)
{
    const int bare = NewOrder(0, 0);
    const int empty = NewOrder(customer, 0);
    dm->pFIBTransaction1.CommitRetaining();
    struct Case
    {
        const char *what;
        std::function<void()> pick;
        QString message;
    };
    const QList<Case> cases = {
        {"an empty journal", [&] { Filter(journal->edNum, "нет такого"); }, TOrderDocument::NoOrderText},
        {"an order without a customer", [&] { Filter(journal->edNum, ""), Pick(bare); }, TOrderDocument::NoCustomerText},
        // Last: from here on the lines dataset stays open on this order.
        {"an order without lines", [&] { Pick(empty); }, TOrderDocument::NoLinesText},
    };
    for (const Case &c : cases) {
        dialogs.Clear();
        c.pick();
        journal->Mak_Zakaz(order, "zakaz");
        EXPECT_EQ(dialogs.Texts(), QStringList({c.message})) << c.what;
        EXPECT_EQ(shell.Opened, QStringList()) << c.what;
        EXPECT_TRUE(QDir(dm->DocFolder).isEmpty()) << c.what;
    }
}

TEST_F(Documents, BrokenTemplatesAndOutputs)
{
    const QString folder = OwnTemplates();
    const QByteArray good = Read(folder + "zakaz.dot");
    std::optional<Recorder> word;
    const QString copyFailed = TOrderDocument::CopyFailedText + Output("zakaz");
    const QString failed = TOrderDocument::WordFailedText + "EWordProcessorError ";
    struct Case
    {
        const char *what;
        std::function<void()> spoil;
        QString message; // the whole message, or its beginning when it ends in a blank
        bool opened;
        std::function<void()> check;
    };
    const QList<Case> cases = {
        {"a missing template, the older document is deleted first",
         [&] { QFile::remove(folder + "zakaz.dot"), QDir().mkpath(dm->DocFolder), Write(Output("zakaz"), "older"); },
         copyFailed, false, [&] { EXPECT_FALSE(QFileInfo::exists(Output("zakaz"))); }},
        {"a read-only older document survives and opens",
         [&] {
             QDir().mkpath(dm->DocFolder), Write(Output("zakaz"), "older");
             QFile::setPermissions(Output("zakaz"), QFile::ReadOwner | QFile::ReadGroup);
         },
         copyFailed, true, [&] { EXPECT_EQ(Read(Output("zakaz")), "older"); }},
        {"a folder in place of the document", [&] { QDir().mkpath(Output("zakaz")); }, copyFailed, false, [] {}},
        {"a document folder that cannot be made",
         [&] { QDir(dm->DocFolder).removeRecursively(), Write(dm->DocFolder.chopped(1), "a file"); }, copyFailed,
         false, [] {}},
        {"too few columns: the row stays, its totals are lost, #colZ# counts it",
         [&] { Write(folder + "zakaz.dot", Template({2, 2, 4}, "#colZ# #itog# #summaZ# #NDS#")), word.emplace(1); },
         "", true,
         [&] {
             EXPECT_EQ(word->Values("colZ|itog|summaZ|NDS"),
                       QStringList({"#itog#=0.00 р. ", "#colZ#=3", "#summaZ#=0.00 р. ", "#NDS#=0.00 р. "}));
             const QList<QStringList> rows = TableRows(Output("zakaz"), 3, 4);
             ASSERT_EQ(rows.size(), 4);
             EXPECT_EQ(QStringList({rows[1][0], rows[2][0], rows[3][0], rows[3][1], rows[3][3]}),
                       QStringList({"1", "2", "3", "Масло 5W-40", "412.50 р. "}));
         }},
        {"no line table: the half-made document is saved and opened",
         [&] { Write(folder + "zakaz.dot", Template({2, 2}, "#itog#")); }, failed, true,
         [&] { EXPECT_TRUE(Read(Output("zakaz")).contains("#itog#")); }},
        {"a template that is not a document", [&] { Write(folder + "zakaz.dot", "MZ\x90 not a document"); }, failed,
         true, [] {}},
        {"a truncated template", [&] { Write(folder + "zakaz.dot", good.left(good.size() / 2)); }, failed,
         true, [] {}},
        {"no word processor: the copied template opens as it is",
         [&] {
             WordProcessor::InstallFactory([]() -> std::unique_ptr<WordProcessor> { throw EWordProcessorError("нет"); });
         },
         failed + "нет", true,
         [&] {
             EXPECT_EQ(Read(Output("zakaz")), good);
             EXPECT_TRUE(dm->spRequisitsOpen.Active()) << "left open when no instance was made";
         }},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        dialogs.Clear();
        shell.Opened.clear();
        Write(folder + "zakaz.dot", good);
        c.spoil();
        journal->Mak_Zakaz(order, "zakaz");
        ASSERT_EQ(dialogs.Texts().size(), c.message.isEmpty() ? 0 : 1) << dialogs.Texts().join('\n').toStdString();
        if (!c.message.isEmpty())
            EXPECT_TRUE(c.message.endsWith(' ') ? dialogs.Texts()[0].startsWith(c.message) : dialogs.Texts()[0] == c.message)
                << dialogs.Texts()[0].toStdString();
        EXPECT_EQ(shell.Opened, c.opened ? QStringList({Output("zakaz")}) : QStringList());
        c.check();
        // Clean up for the next case.
        word.reset();
        WordProcessor::InstallFactory({});
        dm->spRequisitsOpen.Close();
        QFile::remove(dm->DocFolder.chopped(1));
        QDir(dm->DocFolder).removeRecursively();
    }
}

TEST_F(Documents, OddDataAndOtherCurrencyMarks)
{
    const TCurrencyWords saved = CurrencyWords();
    CurrencyWords() = {"грн.", "гривен", "коп."};
    // No KPP: the joined tax number is null.
    Exec(QString("update CUST set KPP = null where ID = %1").arg(customer));
    {
        Recorder word(1);
        journal->Mak_Zakaz(order, "schet");
        EXPECT_EQ(word.Values("itog|itogP|ClientINN"),
                  QStringList({"#itog#=3526.00 грн. ", "#itogP#=Три тысячи пятьсот двадцать шесть гривен 00 коп.",
                               "#ClientINN#="}));
    }
    CurrencyWords() = saved;
    EXPECT_TRUE(TableRows(Output("schet"), 2, 8).value(1).value(3).endsWith(".00 грн. "));

    // A name longer than the procedure's column: the database refuses, no document is made.
    dialogs.Clear();
    shell.Opened.clear();
    const int other = NewOrder(customer, 0);
    Exec(QString("insert into ORDSERV (IDORDER, IDSERV) values (%1, %2)")
             .arg(other)
             .arg(NewService("Замена переднего левого амортизатора в сборе")));
    // As in a fresh run: nothing else closes the lines that the first print opened.
    dm->spOrdMatServOpen.Close();
    Pick(other);
    ModalDriver driver;
    driver.Then([](QWidget *modal) { static_cast<TSelectPrintDocFM *>(modal)->AdvGlowButton1->click(); });
    journal->actPrint->trigger();
    ASSERT_EQ(dialogs.Texts().size(), 1);
    EXPECT_TRUE(dialogs.Texts()[0].contains("truncation")) << dialogs.Texts()[0].toStdString();
    EXPECT_EQ(shell.Opened, QStringList());
}

TEST_F(Documents, SeveralKindsInOneGoAndTheLinesTheFirstPrintFixed)
{
    ModalDriver driver;
    driver.Then([](QWidget *modal) {
        auto *dialog = static_cast<TSelectPrintDocFM *>(modal);
        for (QCheckBox *box : {dialog->cxCheckBox2, dialog->cxCheckBox3, dialog->cxCheckBox4, dialog->cxCheckBox5})
            box->setChecked(true);
        dialog->AdvGlowButton1->click();
    });
    journal->actPrint->Execute();
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(shell.Opened, QStringList({Output("zakaz"), Output("zakaz-nar"), Output("schet"), Output("schet-fact"),
                                         Output("act")}));

    // Another order in the same run: its number, but the customer and lines of the first print.
    Pick(Scalar("select ID from ORDERS where NUM = 'Б-1'").toInt());
    Recorder word(1);
    journal->Mak_Zakaz(0, "act");
    EXPECT_EQ(word.Values("itog|ClientName|nomer"),
              QStringList({"#itog#=" + sum, "#ClientName#=Иванов Иван", "#nomer#=Б-1"}));
    EXPECT_EQ(TableRows(Output("act", "Б-1"), 3, 5).size(), 4);
}

TEST_F(Documents, ATemplateSavedAgainByLibreOfficeStillWorks)
{
    const QString folder = OwnTemplates();
    QTemporaryDir saved;
    QFile::copy(folder + "zakaz.dot", saved.path() + "/zakaz.rtf");
    ASSERT_TRUE(Soffice({"--convert-to", "rtf", "--outdir", saved.path() + "/out", saved.path() + "/zakaz.rtf"}));
    QFile::remove(folder + "zakaz.dot");
    ASSERT_TRUE(QFile::copy(saved.path() + "/out/zakaz.rtf", folder + "zakaz.dot"));

    journal->Mak_Zakaz(order, "zakaz");
    EXPECT_EQ(dialogs.Texts(), QStringList());
    EXPECT_EQ(TableRows(Output("zakaz"), 3, 5).size(), 4);
    const QString text = ReaderTexts({Output("zakaz")}).value(0);
    EXPECT_EQ(Leftovers(text), QStringList());
    for (const QString &seen : {lines[0].name, lines[2].name, lines[2].sum.trimmed(), sum.trimmed(), sumWords, vatWords})
        EXPECT_TRUE(text.contains(seen)) << seen.toStdString() << "\n" << text.toStdString();
}

TEST(DocumentValues, RoundingAndNumbers)
{
    // Ties go to the even neighbour, not away from zero.
    struct Case
    {
        double value;
        qint64 sum, vat;
    };
    for (const Case &c : {Case{0.00005, 0, 0}, Case{0.00025, 2, 0}, Case{0.125, 1250, 1200}, Case{0.375, 3750, 3800},
                          Case{587.66666412353516, 5876667, 5876700}, Case{3526, 35260000, 35260000}}) {
        EXPECT_EQ(TOrderDocument::SumAmount(c.value), c.sum) << c.value;
        EXPECT_EQ(TOrderDocument::VatAmount(c.value), c.vat) << c.value;
    }
    const QList<QPair<double, QString>> floats = {{2, "2"}, {1.5, "1.5"}, {double(1.1f), "1.1"}, {0, "0"},
                                                  {1000000, "1000000"}, {double(1.0f / 3), "0.333333"}};
    for (const auto &[value, text] : floats)
        EXPECT_EQ(TOrderDocument::FloatText(value), text) << value;
    EXPECT_EQ(TOrderDocument::OutputPath("/d/", "schet", "P-80012"), "/d/schetP-80012.rtf");
    for (const TOrderDocument::TKind &k : TOrderDocument::Kinds)
        EXPECT_TRUE(QFileInfo(QCoreApplication::applicationDirPath() + "/templates/" + k.kind + ".dot").isFile()) << k.kind;
}

} // namespace
