// The three reports: their statements, grid captions and workbooks.

#include "data_dm.h"
#include "report_fm.h"

const TReportSettings TfmVipZakaz::Report{
    QStringLiteral("fmVipZakaz"),
    &TDataDM::dbOtchetVipZakaz,
    &TDataDM::dsOtchetVipZakaz,
    {QStringLiteral("SELECT *"), QStringLiteral("FROM ORDERS O"), QStringLiteral("LEFT JOIN CUST C ON O.IDCUST = C.ID"),
     QStringLiteral("LEFT JOIN AUTO A ON O.IDAUTO = A.ID"), QStringLiteral("LEFT JOIN MODEL M ON A.MODNAME = M.ID"),
     QStringLiteral("LEFT JOIN PAYSTATE N ON O.PAYSTATE = N.ID"), QStringLiteral("LEFT JOIN OSTATE D ON O.idstatus = D.ID"),
     QStringLiteral("where")},
    {},
    {{QStringLiteral("NUM"), QStringLiteral("Номер заказа")},
     {QStringLiteral("CREATE_DATE"), QStringLiteral("Дата заказа")},
     {QStringLiteral("STATUS_DATE"), QStringLiteral("Дата изменения")},
     {QStringLiteral("STATENAME"), QStringLiteral("Статус")},
     {QStringLiteral("STATUS"), QStringLiteral("Статус оплаты")},
     {QStringLiteral("CUSTNAME"), QStringLiteral("Клиент")},
     {QStringLiteral("FULLNAME"), QStringLiteral("Полное наименование")},
     {QStringLiteral("DISCOUNT"), QStringLiteral("Скидка")},
     {QStringLiteral("SUMORDER"), QStringLiteral("Сумма заказа")},
     {QStringLiteral("sumOplata"), QStringLiteral("К оплате")}},
    {QStringLiteral("SUMORDER"), QStringLiteral("sumOplata")},
    QStringLiteral("Отчёт о заказах"),
    {QStringLiteral("№ заказа"), QStringLiteral("Дата заказа"), QStringLiteral("Дата изменения"), QStringLiteral("Статус"),
     QStringLiteral("Статус оплаты"), QStringLiteral("Клиент"), QStringLiteral("Полное наименование"),
     QStringLiteral("Скидка"), QStringLiteral("Сумма заказа"), QStringLiteral("К оплате")},
    {QStringLiteral("NUM"), QStringLiteral("CREATE_DATE"), QStringLiteral("STATUS_DATE"), QStringLiteral("STATENAME"),
     QStringLiteral("STATUS"), QStringLiteral("CUSTNAME"), QStringLiteral("FULLNAME"), QStringLiteral("DISCOUNT"),
     QStringLiteral("SUMORDER"), QStringLiteral("sumOplata")},
    {QStringLiteral("SUMORDER"), QStringLiteral("sumOplata")},
    QStringLiteral("Отчет о заказах"),
};

// The popularity reports have no footer sums: the ones they were given name fields they do not have.
const TReportSettings TfmOtchetUslug::Report{
    QStringLiteral("fmOtchetUslug"),
    &TDataDM::dbOtchetUslug,
    &TDataDM::dsOtchetUslug,
    {QStringLiteral("SELECT A.servname,count(A.ID) as cnt,sum(D.summ) as sumprice"), QStringLiteral("FROM ORDSERV D"),
     QStringLiteral("LEFT JOIN ORDERS O ON O.ID = D.idorder"), QStringLiteral("LEFT JOIN SERV A ON A.id=D.idserv"),
     QStringLiteral("where")},
    {QStringLiteral("GROUP BY A.servname,A.ID")},
    {{QStringLiteral("SERVNAME"), QStringLiteral("Наименование услуги")},
     {QStringLiteral("CNT"), QStringLiteral("Кол-во")},
     {QStringLiteral("SUMPRICE"), QStringLiteral("На сумму")}},
    {},
    QStringLiteral("Отчёт о хитах услуг"),
    {QStringLiteral("Наименование услуги"), QStringLiteral("Кол-во"), QStringLiteral("На сумму")},
    {QStringLiteral("SERVNAME"), QStringLiteral("CNT"), QStringLiteral("SUMPRICE")},
    {QStringLiteral("CNT"), QStringLiteral("SUMPRICE")},
    QStringLiteral("Отчет о хитах услуг"),
};

// The grid keeps the services' first caption; only its field differs.
const TReportSettings TfmOtchetMaterial::Report{
    QStringLiteral("fmOtchetMaterial"),
    &TDataDM::dbOtchetMaterial,
    &TDataDM::dsOtchetMaterial,
    {QStringLiteral("SELECT A.matname,sum(D.OCNT) as cnt,sum(D.OCNT*D.summ) as sumprice"), QStringLiteral("FROM ORDMAT D"),
     QStringLiteral("LEFT JOIN ORDERS O ON O.ID = D.idorder"), QStringLiteral("LEFT JOIN MAT A ON A.id=D.idmat"),
     QStringLiteral("where")},
    {QStringLiteral("GROUP BY A.matname,A.ID")},
    {{QStringLiteral("MATNAME"), QStringLiteral("Наименование услуги")},
     {QStringLiteral("CNT"), QStringLiteral("Кол-во")},
     {QStringLiteral("SUMPRICE"), QStringLiteral("На сумму")}},
    {},
    QStringLiteral("Отчёт о хитах материалов"),
    {QStringLiteral("Материал"), QStringLiteral("Кол-во"), QStringLiteral("На сумму")},
    {QStringLiteral("MATNAME"), QStringLiteral("CNT"), QStringLiteral("SUMPRICE")},
    {QStringLiteral("CNT"), QStringLiteral("SUMPRICE")},
    QStringLiteral("Отчет о хитах материалов"),
};

TfmVipZakaz::TfmVipZakaz(TMainWindowLink *mainWindow, QWidget *parent) : TfmReport(Report, mainWindow, parent)
{
}

TfmOtchetUslug::TfmOtchetUslug(TMainWindowLink *mainWindow, QWidget *parent) : TfmReport(Report, mainWindow, parent)
{
}

TfmOtchetMaterial::TfmOtchetMaterial(TMainWindowLink *mainWindow, QWidget *parent)
    : TfmReport(Report, mainWindow, parent)
{
}
