// Options, the script editor, the shop's requisites on the suite's screens and the about box.

#include "admin_fixture.h"

#include "about_fm.h"
#include "common.h"
#include "deploy_scripts.h"
#include "options_fm.h"
#include "requisits_fm.h"
#include "script_fm.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>

namespace {

// ---- Options --------------------------------------------------------------------------------------

TEST_F(AdminTest, OptionsCancelTakesTheMarksOverButNotTheNumberingSettingsAndOkStoresBoth)
{
    const auto config = [&](const QString &key) { return Scalar("select PVALUE from CONFIG where PNAME = '" + key + "'").toString(); };
    // Runs the dialog, types into it, and leaves it by OK or Cancel; what it showed at first.
    const auto run = [](bool ok, const std::function<void(TOptionsFM &)> &typing) {
        TOptionsFM options;
        QStringList seen;
        OnModal<TOptionsFM>([&] { EXPECT_EQ(options.Execute(), ok); }, {[&](TOptionsFM *) {
            for (QLineEdit *edit : {options.cxTextEdit1, options.cxTextEdit2, options.cxTextEdit3, options.edReportNum,
                                    options.edOrderNum, options.edOrderPostfix})
                seen << edit->text();
            seen << (options.cbAutoBackup->isChecked() ? "копия" : "без копии");
            options.cbAutoBackup->setChecked(!options.cbAutoBackup->isChecked());
            typing(options);
            (ok ? options.AdvGlowButton1 : options.AdvGlowButton2)->click();
        }});
        return seen;
    };
    CurrencyWords().Val1 = "$";
    const QStringList seen = run(false, [](TOptionsFM &o) {
        TypeText(o.cxTextEdit1, "у.е.");
        TypeText(o.cxTextEdit3, "цент");
        TypeText(o.edOrderNum, "Б-");
    });
    EXPECT_EQ(seen, QStringList({"$", "руб.", "коп.", "1-", "A-", "001", "копия"}));
    EXPECT_TRUE(TDataDM::AutoBackupEnabled());
    EXPECT_EQ(QStringList({CurrencyWords().Val1, CurrencyWords().Val2, CurrencyWords().Val3}),
              QStringList({"у.е.", "руб.", "цент"}));
    EXPECT_EQ(config("ORDERSNUM"), "A-");

    run(true, [](TOptionsFM &o) {
        TypeText(o.cxTextEdit2, "долл.");
        TypeText(o.edReportNum, "О-");
        TypeText(o.edOrderNum, "Б-");
        TypeText(o.edOrderPostfix, "0100");
    });
    EXPECT_EQ(CurrencyWords().Val2, "долл.");
    EXPECT_FALSE(TDataDM::AutoBackupEnabled()) << "the backup at exit is switched off at OK";
    EXPECT_EQ(QStringList({config("REPORTSNUM"), config("ORDERSNUM"), config("ORDERSPOSTFIX")}),
              QStringList({"О-", "Б-", "0100"}));
    EXPECT_EQ(Count("CONFIG"), 5) << "the rows are updated, not added";
    CurrencyWords() = TCurrencyWords();
}

// ---- Script editor --------------------------------------------------------------------------------

class ScriptTest : public AdminTest
{
protected:
    void SetUp() override
    {
        RemoveOverrides(); // a run that broke off must not leave them for the next deployment
        AdminTest::SetUp();
    }
    void TearDown() override
    {
        window.reset();
        RemoveOverrides();
        AdminTest::TearDown();
    }
    static QString Beside(DeployScript which) { return QCoreApplication::applicationDirPath() + "/" + OverrideFileName(which); }
    static void RemoveOverrides()
    {
        QFile::remove(Beside(DeployScript::Tables));
        QFile::remove(Beside(DeployScript::Procedures));
    }
    void Show() { script = WindowTest::Show<TScriptFM>(); }
    TScriptFM *script = nullptr;
};

TEST_F(ScriptTest, PanesShowOnlyOverrideFilesSaveWritesThemAndAQueryRunsOnEnterOrButton)
{
    Show();
    EXPECT_EQ(script->mTables->toPlainText(), "");
    EXPECT_EQ(script->mProcedures->toPlainText(), "");

    script->mTables->setPlainText("CREATE TABLE КНИГИ (ID INTEGER);\n-- своя схема");
    script->cxButton1->click();
    EXPECT_FALSE(QFile::exists(Beside(DeployScript::Procedures)));
    script->mProcedures->clear();
    script->cxButton2->click();
    const QFileInfo procedures(Beside(DeployScript::Procedures));
    EXPECT_TRUE(procedures.exists() && procedures.size() == 0) << "an empty pane writes an empty file";
    // What was saved is what the deployment reads, and what the editor shows next time.
    QStringList lines;
    ASSERT_TRUE(ReadOverrideFile(Beside(DeployScript::Tables), lines));
    EXPECT_EQ(lines, QStringList({"CREATE TABLE КНИГИ (ID INTEGER);", "-- своя схема"}));
    Show();
    EXPECT_EQ(script->mTables->toPlainText(), "CREATE TABLE КНИГИ (ID INTEGER);\n-- своя схема");
    EXPECT_EQ(script->mProcedures->toPlainText(), "");

    // A query runs on Enter or the button; a bad one keeps the columns.
    script->Memo1->setPlainText("select ID, ROLENAME from ROLES order by ID");
    script->Memo1->moveCursor(QTextCursor::End);
    QTest::keyClick(script->Memo1, Qt::Key_Return);
    EXPECT_EQ(script->Memo1->toPlainText(), "select ID, ROLENAME from ROLES order by ID") << "Enter adds no line";
    EXPECT_EQ(Captions(script->GridViewScript), QStringList({"ID", "ROLENAME"}));
    WindowTest::Settle(); // the grid fetches as it lays out its rows, which takes a while on a busy machine
    ASSERT_EQ(script->GridViewScript->RowCount(), 3);
    EXPECT_EQ(script->GridViewScript->DisplayText(1, 1), "Оператор");

    script->Memo1->setPlainText("select STATENAME from STATES");
    script->Button1->click();
    EXPECT_EQ(Captions(script->GridViewScript), QStringList({"STATENAME"}));
    script->Memo1->setPlainText("select NOSUCH from NOWHERE");
    script->Button1->click();
    ASSERT_EQ(dialogs.Shown.size(), 1) << "the bad query's error, and nothing before it";
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_EQ(Captions(script->GridViewScript), QStringList({"STATENAME"}));
}

// ---- Requisites and the about box -------------------------------------------------------------------

class RequisitsTest : public AdminTest
{
protected:
    // Shows the shop's card modally, on `screen` where it would stand at `at`, and runs `step` on it.
    void ShowCard(const std::function<void(TRequisitsFM &)> &step, QScreen *screen = nullptr, QPoint at = {})
    {
        dm->spRequisitsOpen.Open();
        TRequisitsFM card(&dm->dsRequisitsOpen, "spCustEdit");
        if (screen)
            card.setScreen(screen), card.move(screen->geometry().topLeft() + at);
        OnModal<TRequisitsFM>([&] { card.ShowModal(); }, {[&](TRequisitsFM *) { step(card); }});
        dm->spRequisitsOpen.Close();
    }
};

TEST_F(RequisitsTest, TheCardSavesTheShopsRowThroughTheCustomerProcedureKeepsItsButtonsWithinTheScreenAndAboutShowsTheVersion)
{
    const int customers = Count("CUST");
    ShowCard([](TRequisitsFM &card) {
        EXPECT_EQ(LabelTexts(&card).size(), 24);
        EXPECT_EQ(NotRussian(LabelTexts(&card)), QStringList());
        EXPECT_FALSE(card.findChild<QWidget *>("ID_TCX")->isEnabled());
        EXPECT_EQ(card.findChild<QLineEdit *>("BANK_TCX")->text(), "Первый шиномонтажный Банк");
        TypeText(card.findChild<QWidget *>("CUSTNAME_TCX"), "ООО \"Колесо\"");
        TypeText(card.findChild<QWidget *>("PHONES_TCX"), "222-22-22");
        card.AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Count("CUST"), customers);
    // The phone of the dataset is the procedure's HOME_PHONE; what was not typed stays.
    EXPECT_EQ(Scalar("select CUSTNAME || '|' || HOME_PHONE || '|' || BANK || '|' || CARDNUMBER from CUST where ID = 1").toString(),
              "ООО \"Колесо\"|222-22-22|Первый шиномонтажный Банк|00000001");
    EXPECT_DOUBLE_EQ(Scalar("select DISCOUNT_VALUE from CUST where ID = 1").toDouble(), 350.5);
    ShowCard([](TRequisitsFM &card) {
        EXPECT_EQ(card.findChild<QLineEdit *>("CUSTNAME_TCX")->text(), "ООО \"Колесо\"") << "read anew";
        card.AdvGlowButton2->click();
    });

    // The about box shows the version and opens the site.
    TAboutFM about;
    OnModal<TAboutFM>([&] { EXPECT_FALSE(about.Execute()); }, {[&](TAboutFM *) {
        const QDate built = QFileInfo(QCoreApplication::applicationFilePath()).lastModified().date();
        EXPECT_EQ(about.LabelVersion->text(),
                  "Версия " + TAboutFM::FileVersion() + " от " + QLocale().toString(built, QLocale::ShortFormat));
        emit about.cxLabel2->linkActivated(TAboutFM::SiteUrl);
        about.AdvGlowButton2->click();
    }});
    EXPECT_EQ(shell.Opened, QStringList({TAboutFM::SiteUrl}));
    EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d+\\.\\d+\\.\\d+$").match(TAboutFM::FileVersion()).hasMatch());
    // Without a date: day zero of the date arithmetic.
    EXPECT_EQ(TAboutFM::VersionText("1.2.3.4", QDateTime()), "Версия 1.2.3.4 от " + QLocale().toString(QDate(1899, 12, 30), QLocale::ShortFormat));

    // The card stays within the available area of its screen: too tall for it, it scrolls, its buttons in
    // sight; when it fits, it is left as it is. The suite's screens are a 1366 × 768 laptop and a 1024 × 600
    // netbook (tests/support/screens.json).
    ASSERT_EQ(QGuiApplication::screens().size(), 2) << "the suite runs with the screens of screens.json";
    // 24 fields: 692 pixels and a title bar fit 768, not 600; placed low, the card is moved up.
    const struct { const char *screen; QPoint placedAt; bool scrolls; } cases[] = {
        {"Laptop", {300, 0}, false}, {"Laptop", {300, 500}, false}, {"Netbook", {0, 0}, true}};
    for (const auto &c : cases) {
        QScreen *screen = nullptr;
        for (QScreen *s : QGuiApplication::screens())
            screen = s->name() == QLatin1String(c.screen) ? s : screen;
        ASSERT_TRUE(screen) << c.screen;
        ShowCard([&](TRequisitsFM &card) {
            const QRect area = screen->availableGeometry();
            EXPECT_TRUE(area.contains(card.frameGeometry())) << c.screen << " " << c.placedAt.y();
            for (QWidget *button : {static_cast<QWidget *>(card.AdvGlowButton1), static_cast<QWidget *>(card.AdvGlowButton2)})
                EXPECT_TRUE(area.contains(QRect(button->mapToGlobal(QPoint(0, 0)), button->size()))) << c.screen;
            EXPECT_EQ(card.ScrollBox() != nullptr, c.scrolls) << c.screen;
            if (card.ScrollBox()) {
                // The last field can be scrolled to and typed into.
                QWidget *last = card.gbValues->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly).last();
                card.ScrollBox()->ensureWidgetVisible(last);
                const QRect shown(last->mapTo(card.ScrollBox()->viewport(), QPoint(0, 0)), last->size());
                EXPECT_TRUE(card.ScrollBox()->viewport()->rect().contains(shown));
            }
            card.AdvGlowButton2->click();
        }, screen, c.placedAt);
    }
}

} // namespace
