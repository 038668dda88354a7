// Options, the script editor, the shop's requisites and the about box.

#include "admin_fixture.h"

#include "about_fm.h"
#include "common.h"
#include "deploy_scripts.h"
#include "options_fm.h"
#include "requisits_fm.h"
#include "script_fm.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>

#include "db_grid.h"

namespace {

// ---- Options --------------------------------------------------------------------------------------

class OptionsTest : public AdminTest
{
protected:
    void SetUp() override
    {
        AdminTest::SetUp();
        saved = CurrencyWords();
    }
    void TearDown() override
    {
        CurrencyWords() = saved;
        AdminTest::TearDown();
    }
    QString Config(const QString &key) { return Scalar("select PVALUE from CONFIG where PNAME = '" + key + "'").toString(); }

    // Runs the dialog, types into it, and leaves it by OK or Cancel.
    bool Run(bool ok, const std::function<void(TOptionsFM &)> &typing = {})
    {
        TOptionsFM options;
        ModalDriver driver;
        driver.Then([&](QWidget *) {
            seen = {options.cxTextEdit1->text(), options.cxTextEdit2->text(), options.cxTextEdit3->text(),
                    options.edReportNum->text(), options.edOrderNum->text(), options.edOrderPostfix->text()};
            if (typing)
                typing(options);
            (ok ? options.AdvGlowButton1 : options.AdvGlowButton2)->click();
        });
        const bool result = options.Execute();
        EXPECT_EQ(driver.Ran(), 1);
        return result;
    }

    TCurrencyWords saved;
    QStringList seen;
};

TEST_F(OptionsTest, ShowsTheMarksAndTheNumberingSettings)
{
    CurrencyWords().Val1 = "$";
    TOptionsFM options;
    EXPECT_EQ(options.windowTitle(), "OptionsFM");
    EXPECT_EQ(options.gbNumeric->title(), "Нумерация");
    EXPECT_EQ(options.cxGroupBox1->title(), "Валюта");
    EXPECT_FALSE(Run(false));
    EXPECT_EQ(seen, QStringList({"$", "руб.", "коп.", "1-", "A-", "001"}));
}

TEST_F(OptionsTest, CancelTakesTheMarksOverButNotTheSettings)
{
    EXPECT_FALSE(Run(false, [](TOptionsFM &o) {
        TypeText(o.cxTextEdit1, "у.е.");
        TypeText(o.cxTextEdit3, "цент");
        TypeText(o.edOrderNum, "Б-");
    }));
    EXPECT_EQ(CurrencyWords().Val1, "у.е.");
    EXPECT_EQ(CurrencyWords().Val2, "руб.");
    EXPECT_EQ(CurrencyWords().Val3, "цент");
    EXPECT_EQ(Config("ORDERSNUM"), "A-");
}

TEST_F(OptionsTest, OkStoresTheMarksAndTheSettings)
{
    EXPECT_TRUE(Run(true, [](TOptionsFM &o) {
        TypeText(o.cxTextEdit1, "у.е.");
        TypeText(o.cxTextEdit2, "долл.");
        TypeText(o.cxTextEdit3, "цент");
        TypeText(o.edReportNum, "О-");
        TypeText(o.edOrderNum, "Б-");
        TypeText(o.edOrderPostfix, "0100");
    }));
    EXPECT_EQ(CurrencyWords().Val1, "у.е.");
    EXPECT_EQ(CurrencyWords().Val2, "долл.");
    EXPECT_EQ(CurrencyWords().Val3, "цент");
    EXPECT_EQ(Config("REPORTSNUM"), "О-");
    EXPECT_EQ(Config("ORDERSNUM"), "Б-");
    EXPECT_EQ(Config("ORDERSPOSTFIX"), "0100");
    EXPECT_EQ(Count("CONFIG"), 5);
    EXPECT_EQ(FormatMoney(2.5), "2.50 у.е. ");
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
        script.reset();
        RemoveOverrides();
        AdminTest::TearDown();
    }
    static QString Beside(DeployScript which)
    {
        return QCoreApplication::applicationDirPath() + "/" + OverrideFileName(which);
    }
    static void RemoveOverrides()
    {
        QFile::remove(Beside(DeployScript::Tables));
        QFile::remove(Beside(DeployScript::Procedures));
    }
    static QByteArray Read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
    }
    TScriptFM *Show()
    {
        script = std::make_unique<TScriptFM>();
        script->show();
        return script.get();
    }
    QStringList Captions()
    {
        QStringList captions;
        for (TGridColumn *column : script->GridViewScript->ColumnList())
            captions << column->Caption();
        return captions;
    }
    std::unique_ptr<TScriptFM> script;
};

TEST_F(ScriptTest, WithoutOverrideFilesThePanesStayEmpty)
{
    Show();
    EXPECT_EQ(script->PageControl1->currentWidget(), script->TabSheet2);
    EXPECT_EQ(script->PageControl1->tabText(0), "TabSheet1");
    EXPECT_EQ(script->mTables->toPlainText(), "");
    EXPECT_EQ(script->mProcedures->toPlainText(), "");
    EXPECT_EQ(script->ScriptFolder, QCoreApplication::applicationDirPath());
}

TEST_F(ScriptTest, AnOverrideFileIsShownInsteadOfItsBuiltInScript)
{
    {
        QFile file(Beside(DeployScript::Tables));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("CREATE TABLE T1 (ID INTEGER);\n-- своя схема\n");
    }
    Show();
    EXPECT_EQ(script->mTables->toPlainText(), "CREATE TABLE T1 (ID INTEGER);\n-- своя схема\n");
    EXPECT_EQ(script->mProcedures->toPlainText(), "");
}

TEST_F(ScriptTest, SaveWritesTheOverrideFiles)
{
    Show();
    script->mTables->setPlainText("CREATE TABLE КНИГИ (ID INTEGER);");
    script->cxButton1->click();
    EXPECT_EQ(QString::fromUtf8(Read(Beside(DeployScript::Tables))), "CREATE TABLE КНИГИ (ID INTEGER);");
    EXPECT_FALSE(QFile::exists(Beside(DeployScript::Procedures)));
    script->mProcedures->clear();
    script->cxButton2->click();
    EXPECT_EQ(Read(Beside(DeployScript::Procedures)), QByteArray());
    // What was saved is what the deployment reads.
    QStringList lines;
    ASSERT_TRUE(ReadOverrideFile(Beside(DeployScript::Tables), lines));
    EXPECT_EQ(lines, QStringList({"CREATE TABLE КНИГИ (ID INTEGER);"}));
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(ScriptTest, EnterInTheQueryRunsItAndTheGridTakesItsColumns)
{
    Show();
    script->Memo1->setPlainText("select ID, ROLENAME from ROLES order by ID");
    script->Memo1->moveCursor(QTextCursor::End);
    QTest::keyClick(script->Memo1, Qt::Key_Return);
    EXPECT_EQ(script->Memo1->toPlainText(), "select ID, ROLENAME from ROLES order by ID");
    EXPECT_EQ(Captions(), QStringList({"ID", "ROLENAME"}));
    Settle(); // the grid fetches as it lays out its rows
    ASSERT_EQ(script->GridViewScript->RowCount(), 3);
    EXPECT_EQ(script->GridViewScript->DisplayText(1, 1), "Оператор");

    script->Memo1->setPlainText("select STATENAME from STATES");
    script->Button1->click();
    EXPECT_EQ(Captions(), QStringList({"STATENAME"}));
    EXPECT_EQ(script->GridViewScript->Model()->columnCount(), 1);
    EXPECT_EQ(script->GridViewScript->DisplayText(0, 0), "Активен");
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
}

TEST_F(ScriptTest, ABadStatementIsShownAndTheColumnsStay)
{
    Show();
    script->Memo1->setPlainText("select ID from ROLES");
    script->Button1->click();
    script->Memo1->setPlainText("select NOSUCH from NOWHERE");
    script->Button1->click();
    ASSERT_EQ(dialogs.Shown.size(), 1);
    EXPECT_EQ(dialogs.Shown[0].kind, Dialogs::Error);
    EXPECT_EQ(Captions(), QStringList({"ID"}));
}

// ---- Requisites -----------------------------------------------------------------------------------

class RequisitsTest : public AdminTest
{
protected:
    void ShowCard(const std::function<void(TRequisitsFM &)> &step)
    {
        dm->spRequisitsOpen.Open();
        TRequisitsFM card(&dm->dsRequisitsOpen, "spCustEdit");
        ModalDriver driver;
        driver.Then([&](QWidget *) { step(card); });
        card.ShowModal();
        EXPECT_EQ(driver.Ran(), 1);
        dm->spRequisitsOpen.Close();
    }
    QString Cust(const QString &field) { return Scalar("select " + field + " from CUST where ID = 1").toString(); }
};

TEST_F(RequisitsTest, ListsEveryFieldWithARussianLabel)
{
    ShowCard([this](TRequisitsFM &card) {
        EXPECT_EQ(card.objectName(), "RequisitsFM");
        EXPECT_EQ(card.windowTitle(), "Основные сведения");
        const QStringList labels = LabelTexts(&card);
        EXPECT_EQ(labels.size(), 24);
        EXPECT_EQ(card.findChild<QLabel *>("CUSTNAME_LBL")->text(), "Краткое наименование");
        EXPECT_EQ(card.findChild<QLabel *>("PHONES_LBL")->text(), "Телефон");
        for (const QString &label : labels)
            EXPECT_TRUE(label.contains(QRegularExpression("[А-Яа-я]"))) << label.toStdString();
        EXPECT_FALSE(card.findChild<QWidget *>("ID_TCX")->isEnabled());
        EXPECT_TRUE(card.findChild<QWidget *>("CUSTNAME_TCX")->isEnabled());
        EXPECT_NE(dynamic_cast<TDBTextEdit *>(card.findChild<QWidget *>("DISCOUNT_VALUE_TCX")), nullptr);
        EXPECT_EQ(qobject_cast<QLineEdit *>(card.findChild<QWidget *>("BANK_TCX"))->text(), "Первый шиномонтажный Банк");
        card.AdvGlowButton2->click();
    });
}

TEST_F(RequisitsTest, OkSavesTheShopsRowThroughTheCustomerProcedure)
{
    const int customers = Count("CUST");
    ShowCard([](TRequisitsFM &card) {
        TypeText(card.findChild<QWidget *>("CUSTNAME_TCX"), "ООО \"Колесо\"");
        TypeText(card.findChild<QWidget *>("PHONES_TCX"), "222-22-22");
        TypeText(card.findChild<QWidget *>("INN_TCX"), "7701234567");
        card.AdvGlowButton1->click();
    });
    EXPECT_TRUE(dialogs.Shown.isEmpty()) << dialogs.Texts().join('\n').toStdString();
    EXPECT_EQ(Count("CUST"), customers);
    EXPECT_EQ(Cust("CUSTNAME"), "ООО \"Колесо\"");
    // The phone of the dataset is the procedure's HOME_PHONE.
    EXPECT_EQ(Cust("HOME_PHONE"), "222-22-22");
    EXPECT_EQ(Cust("INN"), "7701234567");
    EXPECT_EQ(Cust("BANK"), "Первый шиномонтажный Банк");
    EXPECT_EQ(Cust("CARDNUMBER"), "00000001");
    EXPECT_DOUBLE_EQ(Scalar("select DISCOUNT_VALUE from CUST where ID = 1").toDouble(), 350.5);
    // A second opening reads the row anew.
    ShowCard([](TRequisitsFM &card) {
        EXPECT_EQ(qobject_cast<QLineEdit *>(card.findChild<QWidget *>("CUSTNAME_TCX"))->text(), "ООО \"Колесо\"");
        card.AdvGlowButton2->click();
    });
}

// ---- About ----------------------------------------------------------------------------------------

TEST_F(AdminTest, AboutShowsTheVersionAndOpensTheSite)
{
    TAboutFM about;
    ModalDriver driver;
    driver.Then([&](QWidget *) {
        EXPECT_EQ(about.windowTitle(), "О программе");
        EXPECT_FALSE(about.AdvGlowButton1->isVisibleTo(&about));
        EXPECT_EQ(about.AdvGlowButton2->text(), "Закрыть");
        EXPECT_TRUE(about.cxLabel1->text().startsWith("Kelvarion"));
        EXPECT_TRUE(about.cxLabel1->text().contains("Программа управления автосервисом"));
        const QDate built = QFileInfo(QCoreApplication::applicationFilePath()).lastModified().date();
        EXPECT_EQ(about.LabelVersion->text(),
                  "Версия " + TAboutFM::FileVersion() + " от " + QLocale().toString(built, QLocale::ShortFormat));
        emit about.cxLabel2->linkActivated(TAboutFM::SiteUrl);
        about.AdvGlowButton2->click();
    });
    EXPECT_FALSE(about.Execute());
    EXPECT_EQ(shell.Opened, QStringList({TAboutFM::SiteUrl}));
    EXPECT_TRUE(QRegularExpression("^\\d+\\.\\d+\\.\\d+\\.\\d+$").match(TAboutFM::FileVersion()).hasMatch());
    EXPECT_EQ(TAboutFM::VersionText("1.2.3.4", QDateTime()),
              "Версия 1.2.3.4 от " + QLocale().toString(QDate(1899, 12, 30), QLocale::ShortFormat));
}

} // namespace
