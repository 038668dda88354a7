#include "order_document.h"

#include "app_exception.h"
#include "common.h"
#include "data_dm.h"
#include "dialogs.h"
#include "shell.h"
#include "word_processor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <exception>
#include <memory>

const TOrderDocument::TKind TOrderDocument::Kinds[5] = {{"zakaz", 3, TLayout::Short},
                                                        {"zakaz-nar", 3, TLayout::Short},
                                                        {"schet", 2, TLayout::Wide},
                                                        {"schet-fact", 2, TLayout::Tax},
                                                        {"act", 3, TLayout::Short}};

const QString TOrderDocument::NoOrderText = QStringLiteral("Необходимо выбрать заказ");
const QString TOrderDocument::NoCustomerText = QStringLiteral("В данном заказе отсутствует заказчик(клиент)");
const QString TOrderDocument::NoLinesText =
    QStringLiteral("В данном заказе отсутствуют предоставленные услуги и материалы");
const QString TOrderDocument::CopyFailedText = QStringLiteral("Не удалось скопировать шаблон ");
const QString TOrderDocument::FailedText = QStringLiteral("Ошибка создания документа Word \r\n");

namespace {

QString g_templateFolder;

QString Text(const TFIBDataSet &ds, const char *field)
{
    return ds.FieldByName(QLatin1String(field))->AsString();
}
double Float(const TFIBDataSet &ds, const char *field)
{
    return ds.FieldByName(QLatin1String(field))->AsFloat();
}

void SetParam(TFIBDataSet &ds, const char *name, int value)
{
    if (TFIBXSQLVAR *param = ds.FindParam(QLatin1String(name)))
        param->SetAsInteger(value);
}

// A file without its owner's write permission counts as read-only: it is neither deleted nor
// overwritten, whoever runs the program.
bool ReadOnly(const QFileInfo &file)
{
    return file.isDir() || (file.exists() && !(file.permissions() & QFileDevice::WriteOwner));
}

void DeleteOld(const QString &path)
{
    const QFileInfo file(path);
    if (file.isFile() && !ReadOnly(file))
        QFile::remove(path);
}

bool CopyOver(const QString &from, const QString &to)
{
    const QFileInfo target(to);
    if (ReadOnly(target) || !QFileInfo(from).isFile())
        return false;
    if (target.exists() && !QFile::remove(to))
        return false;
    if (!QFile::copy(from, to))
        return false;
    // A template installed read-only must not make its copies so.
    QFile::setPermissions(to, QFile::permissions(to) | QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return true;
}

QString ErrorClass(const std::exception &error)
{
    if (dynamic_cast<const EWordProcessorError *>(&error))
        return QStringLiteral("EWordProcessorError");
    if (dynamic_cast<const EConvertError *>(&error))
        return QStringLiteral("EConvertError");
    return ExceptionClassName(error);
}

QString ErrorMessage(const std::exception &error)
{
    if (auto *word = dynamic_cast<const EWordProcessorError *>(&error))
        return word->Message();
    if (auto *convert = dynamic_cast<const EConvertError *>(&error))
        return convert->Message;
    return ExceptionMessage(error);
}

void Show(const QString &text)
{
    Dialogs::Current().Show(Dialogs::Information, text);
}

// Steps from the copy to the closing of the shop's details; a failure leaves them where it happened.
void Build(const QString &kind, int lineTable, TOrderDocument::TLayout layout, TFIBDataSet &order,
           const QString &output)
{
    TDataDM &dm = *DataDM;
    QDir().mkpath(QFileInfo(output).absolutePath());
    DeleteOld(output);
    if (!CopyOver(TOrderDocument::TemplatePath(kind), output)) {
        Show(TOrderDocument::CopyFailedText + output);
        return;
    }
    dm.spRequisitsOpen.Open();

    std::unique_ptr<WordProcessor> word = WordProcessor::Create();
    std::exception_ptr failure;
    try {
        std::exception_ptr inner;
        try {
            word->SetVisible(false);
            word->Open(output);
            word->SetSelectionFontSize(13);
            WordTable &table = word->Table(lineTable);
            TOrderDocument::TTotals totals;
            TFIBDataSet &lines = dm.spOrdMatServOpen;
            for (lines.First(); !lines.Eof(); lines.Next()) {
                try {
                    TOrderDocument::AddLine(table, layout, lines, totals);
                } catch (...) {
                    // A row that cannot be written keeps what it has, and the next one is tried.
                }
            }
            for (const auto &[placeholder, value] :
                 TOrderDocument::Placeholders(totals, order, dm.spCustOpen2, dm.spRequisitsOpen))
                TOrderDocument::Replace(*word, placeholder, value);
        } catch (...) {
            inner = std::current_exception();
        }
        // Saved on failure too, so that the user sees how far it got; a failure here wins.
        word->SetDisplayAlerts(0);
        word->SaveAs(output);
        word->SetDisplayAlerts(-1);
        word->Close();
        word->Quit();
        if (inner)
            std::rethrow_exception(inner);
    } catch (...) {
        failure = std::current_exception();
    }
    word.reset();
    dm.spRequisitsOpen.Close();
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace

const TOrderDocument::TKind *TOrderDocument::FindKind(const QString &kind)
{
    for (const TKind &k : Kinds)
        if (kind == QLatin1String(k.kind))
            return &k;
    return nullptr;
}

QString TOrderDocument::TemplateFolder()
{
    return g_templateFolder.isEmpty() ? QCoreApplication::applicationDirPath() + QStringLiteral("/templates/")
                                      : g_templateFolder;
}

void TOrderDocument::SetTemplateFolder(const QString &folder)
{
    g_templateFolder = folder.isEmpty() || folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QString TOrderDocument::TemplatePath(const QString &kind)
{
    return TemplateFolder() + kind + QStringLiteral(".dot");
}

QString TOrderDocument::OutputPath(const QString &docFolder, const QString &kind, const QString &num)
{
    return docFolder + kind + num + QStringLiteral(".rtf");
}

void TOrderDocument::Make(TFIBDataSet *orders, const QString &kind)
{
    // The order is read from the current row, whatever number the caller passed.
    if (!orders || !orders->Active() || orders->IsEmpty()
        || orders->FieldByName(QStringLiteral("ID"))->AsInteger() == 0) {
        Show(NoOrderText);
        return;
    }
    const int customer = orders->FieldByName(QStringLiteral("SYS_IDCUST"))->AsInteger();
    if (customer == 0) {
        Show(NoCustomerText);
        return;
    }
    TDataDM &dm = *DataDM;
    // Opened without a close: within a run the first print fixes what these two hold.
    SetParam(dm.spCustOpen2, "ID_CUST", customer);
    dm.spCustOpen2.Open();
    SetParam(dm.spOrdMatServOpen, "IDORDER", orders->FieldByName(QStringLiteral("ID"))->AsInteger());
    dm.spOrdMatServOpen.Open();

    QString output;
    if (dm.spOrdMatServOpen.IsEmpty()) {
        Show(NoLinesText);
    } else {
        try {
            const TKind *found = FindKind(kind);
            // Any other kind is taken as a short one with its lines in the third table.
            const int lineTable = found ? found->lineTable : 3;
            const TLayout layout = found ? found->layout : TLayout::Short;
            output = OutputPath(dm.DocFolder, kind, orders->FieldByName(QStringLiteral("NUM"))->AsString());
            Build(kind, lineTable, layout, *orders, output);
        } catch (const std::exception &e) {
            Show(FailedText + ErrorClass(e) + QLatin1Char(' ') + ErrorMessage(e));
        } catch (...) {
            Show(FailedText + QStringLiteral("Exception"));
        }
    }
    // Whatever was saved, even half made, opens for the user.
    if (!output.isEmpty() && QFileInfo(output).isFile())
        Shell::Current().Open(output);
}

void TOrderDocument::AddLine(WordTable &table, TLayout layout, const TFIBDataSet &lines, TTotals &totals)
{
    table.AddRow();
    const int r = table.RowCount();
    table.SetCellText(r, 1, QString::number(r - 1));
    table.SetCellText(r, 2, Text(lines, "SERVNAME"));
    totals.count += 1;

    const double hours = Float(lines, "OHOURS");
    const double cost = Float(lines, "COST");
    const double vat = Float(lines, "OUTNDS");
    const double sum = Float(lines, "SUMM");
    const QString rate = Text(lines, "NDS") + QLatin1Char('%');
    switch (layout) {
    case TLayout::Short:
        table.SetCellText(r, 3, FloatText(hours));
        table.SetCellText(r, 4, FormatMoney(cost));
        table.SetCellText(r, 5, FormatMoney(sum));
        break;
    case TLayout::Wide:
        table.SetCellText(r, 3, FloatText(hours));
        table.SetCellText(r, 4, FormatMoney(cost));
        table.SetCellText(r, 5, FormatMoney(cost * hours));
        table.SetCellText(r, 6, rate);
        table.SetCellText(r, 7, FormatMoney(vat));
        table.SetCellText(r, 8, FormatMoney(sum));
        break;
    case TLayout::Tax:
        // Columns 3 and 7 stay as the template has them.
        table.SetCellText(r, 4, FloatText(hours));
        table.SetCellText(r, 5, FormatMoney(cost));
        table.SetCellText(r, 6, FormatMoney(cost * hours));
        table.SetCellText(r, 8, rate);
        table.SetCellText(r, 9, FormatMoney(vat));
        table.SetCellText(r, 10, FormatMoney(sum));
        break;
    }
    totals.vat += vat;
    totals.gross += cost * hours;
    totals.sum += sum;
}

QList<QPair<QString, QString>> TOrderDocument::Placeholders(const TTotals &totals, const TFIBDataSet &order,
                                                            const TFIBDataSet &customer, const TFIBDataSet &shop)
{
    const TCurrencyWords &words = CurrencyWords();
    const QString num = Text(order, "NUM");
    const QString date = order.FieldByName(QStringLiteral("CREATE_DATE"))->AsDateTime().date().toString(QStringLiteral("dd.MM.yy"));
    const QString bank = Text(shop, "BANK");
    return {
        {QStringLiteral("#itog#"), FormatMoney(totals.sum)},
        {QStringLiteral("#itogP#"), AmountInWords(words.Val2, words.Val3, SumAmount(totals.sum))},
        {QStringLiteral("#NDSP#"), AmountInWords(words.Val2, words.Val3, VatAmount(totals.vat))},
        {QStringLiteral("#colZ#"), FloatText(totals.count)},
        {QStringLiteral("#summaZ#"), FormatMoney(totals.gross)},
        {QStringLiteral("#NDS#"), FormatMoney(totals.vat)},
        {QStringLiteral("#MainName#"), Text(shop, "CUSTNAME")},
        {QStringLiteral("#MainINN#"), Text(shop, "INN")},
        {QStringLiteral("#MainSchet#"), Text(shop, "PAY_ACC")},
        {QStringLiteral("#MainAddress#"), Text(shop, "ADDRESS")},
        {QStringLiteral("#MainTel#"), Text(shop, "PHONES")},
        // The shop has no fax of its own.
        {QStringLiteral("#MainFax#"), QString()},
        {QStringLiteral("#MainBank#"), bank},
        {QStringLiteral("#MainKorChet#"), Text(shop, "CORR_ACC")},
        {QStringLiteral("#MainBIK#"), Text(shop, "BIK")},
        // A second time, by then finding nothing.
        {QStringLiteral("#MainBank#"), bank},
        {QStringLiteral("#MainChief#"), Text(shop, "GEN_DIR")},
        {QStringLiteral("#MainBuh#"), Text(shop, "GLAV_BUH")},
        {QStringLiteral("#ZakazData#"), num + QStringLiteral(" от ") + date},
        {QStringLiteral("#data#"), date},
        {QStringLiteral("#ClientName#"), Text(customer, "CUST_NAME")},
        {QStringLiteral("#ClientAddress#"), Text(customer, "FACT_ADDR")},
        {QStringLiteral("#ClientINN#"), Text(customer, "INNKPP")},
        {QStringLiteral("#ClientTel#"), Text(customer, "PHONES")},
        // The model's name, whatever the placeholder says.
        {QStringLiteral("#AvtoMarka#"), Text(order, "SYS_MOD_NAME")},
        {QStringLiteral("#AvtoNomer#"), Text(order, "REG")},
        {QStringLiteral("#AvtoVIN#"), Text(order, "VIN")},
        {QStringLiteral("#AvtoDvig#"), Text(order, "DRIVE")},
        {QStringLiteral("#AvtoColor#"), Text(order, "COLNAME")},
        {QStringLiteral("#AvtoPrim#"), Text(order, "COMMENT")},
        {QStringLiteral("#ZakazNomer#"), num},
        {QStringLiteral("#nomer#"), num},
        {QStringLiteral("#nomerZ#"), num},
    };
}

void TOrderDocument::Replace(WordProcessor &word, const QString &placeholder, const QString &value)
{
    word.ClearFindFormatting();
    WordFind find;
    find.Text = placeholder;
    find.Replacement = value;
    find.Forward = true;
    find.Wrap = 1;
    find.Format = false;
    find.MatchCase = false;
    find.MatchWholeWord = false;
    find.MatchWildcards = false;
    find.MatchSoundsLike = false;
    find.MatchAllWordForms = false;
    word.ReplaceAll(find);
}

qint64 TOrderDocument::SumAmount(double sum)
{
    // nearbyint under the default rounding mode: ties go to the even neighbour.
    return qint64(std::nearbyint(sum * 10000));
}

qint64 TOrderDocument::VatAmount(double vat)
{
    const double kopecks = std::nearbyint(vat * 100);
    return qint64(std::nearbyint(kopecks / 100 * 10000));
}

QString TOrderDocument::FloatText(double value)
{
    QString text = QString::number(value, 'f', 6);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}
