#pragma once
// The list control of every journal and dictionary: a grid over a dataset of the data module whose
// columns come from the field names, with add, edit and delete through a card and the stored-procedure
// family <ProcPrefix>Empty / Edit / Del, rights of the logged-in role, self-registration in the rights
// catalogue, column titles from the ini file and export to a spreadsheet file.

#include "actions.h"
#include "fib_datasource.h"
#include "fib_query.h"

#include <QFrame>
#include <QPointer>
#include <functional>

class QGroupBox;
class QMenu;
class QToolBar;
class QToolButton;
class TCustomDictFM;
class TDBGrid;
class TDBGridView;

class TGridFrame : public QFrame
{
    Q_OBJECT
public:
    explicit TGridFrame(QWidget *parent = nullptr, const QString &name = QStringLiteral("GridFrame"));
    ~TGridFrame() override;

    QGroupBox *gbGrid;
    TDBGrid *Grid;
    TDBGridView *GridView;
    QToolBar *sToolBar1;
    QToolButton *ToolButton1, *ToolButton2, *ToolButton3, *ToolButton4;
    TActionList *alGrid;
    TAction *actAdd, *actEdit, *actDel, *actRefresh, *actDblClick;
    TDataSource *DS;
    TpFIBQuery *Query;
    QMenu *pmMain;
    QAction *miExcelExport;

    // Set by the owning form.
    QString ProcPrefix;
    QString AddCaption;
    QString EditCaption;
    QString DelPrompt;
    // Must create the card and store it in CardForm.
    std::function<void()> OnCreateCard;
    std::function<void(TFIBDataSet *dataSet)> OnFillParameters;
    std::function<void(QObject *sender)> OnAfterAddRefresh;

    // The card of the operation under way; null between operations.
    TCustomDictFM *CardForm = nullptr;
    qint32 NewRowId = 0;
    qint32 SelectedId = 0;
    bool RightsOff = false;

    // The form whose name heads the caption section; by default the form the frame stands in.
    void SetOwnerForm(QWidget *form) { m_owner = form; }
    QWidget *OwnerForm() const;

    void actRefreshExecute(QObject *sender);
    void actAddExecute(QObject *sender);
    void actEditExecute(QObject *sender);
    void actDelExecute(QObject *sender);
    // Add for rows made elsewhere: the card of the current row without its OK button.
    void Test(QObject *sender);
    void GridViewDblClick(QObject *sender);
    void miExcelExportClick(QObject *sender);
    void CheckStateAction();
    void alGridExecute(TAction *action, bool &handled);
    // The first form up the parent chain, or null.
    QWidget *GetParentForm() const;
    // "<form>.<frame>": the key of the frame's rights.
    QString RightsKey() const;
    void ReadColumnCaption();
    // For grids with more columns than a window is wide: each column takes what its title and the first
    // rows shown need, measured once, and the grid scrolls; widths the user sets later stay.
    void FitColumnsToContents(TFIBDataSet &dataSet);
    void WriteColumnCaption(QObject *sender);

    static const QString DefaultDelPrompt;
    // Between the refresh after an add and the search for the new row.
    static constexpr int AddWaitMs = 500;

private:
    // Frees the card of an operation, whatever way the operation ends.
    void FreeCard();
    struct CardRelease
    {
        TGridFrame *frame;
        ~CardRelease() { frame->FreeCard(); }
    };
    // The card on the current row; a save refreshes.
    void ShowCardOfCurrentRow(const QString &caption, bool editMode, bool hideOk);
    void StartTransaction();

    QPointer<QWidget> m_owner;
    bool m_columnsFitted = false;
};

// Whether a widget is one of the system's forms (child windows and free-standing ones).
bool IsForm(const QObject *object);
