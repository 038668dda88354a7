#include "fm_dialog.h"
#include "filter_timer.h"

#include "app_exception.h"
#include "fm_base.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

TfmBaseSingleForm::TfmBaseSingleForm(int parameter, QWidget *parent) : QDialog(parent), Parameter(parameter)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    pnlMain = new QWidget(this);
    pnlMain->setObjectName(QStringLiteral("pnlMain"));
    pnlMain->setAutoFillBackground(true);
    QPalette palette = pnlMain->palette();
    palette.setColor(QPalette::Window, TfmBase::PanelColor);
    pnlMain->setPalette(palette);
    layout->addWidget(pnlMain, 1);
    ActionList = new TActionList(this, QStringLiteral("ActionList"));
}

void TfmBaseSingleForm::FormShow(QObject *)
{
}

void TfmBaseSingleForm::FormCloseQuery(QObject *, bool &)
{
}

void TfmBaseSingleForm::FormClose(QObject *, TCloseAction &)
{
}

void TfmBaseSingleForm::SetModalResult(int result)
{
    m_modalResult = result;
    if (!m_loop || result == mrNone || m_checkPending)
        return;
    m_checkPending = true;
    QTimer::singleShot(0, this, [this] {
        m_checkPending = false;
        CloseModal();
    });
}

bool TfmBaseSingleForm::CloseModal()
{
    if (!m_loop || m_modalResult == mrNone)
        return false;
    try {
        bool canClose = true;
        FormCloseQuery(this, canClose);
        TCloseAction action = caNone;
        if (canClose) {
            action = caHide;
            FormClose(this, action);
        }
        if (action == caNone)
            m_modalResult = mrNone;
    } catch (...) {
        // The window stays, and the user reads what went wrong.
        m_modalResult = mrNone;
        HandleCurrentException();
    }
    if (m_modalResult == mrNone)
        return false;
    m_loop->quit();
    return true;
}

int TfmBaseSingleForm::ShowModal()
{
    m_modalResult = mrNone;
    m_showError = nullptr;
    QEventLoop loop;
    m_loop = &loop;
    setWindowModality(Qt::ApplicationModal);
    show();
    if (!m_showError && !(m_modalResult != mrNone && CloseModal()))
        loop.exec(QEventLoop::DialogExec);
    m_loop = nullptr;
    hide();
    setWindowModality(Qt::NonModal);
    if (m_showError) {
        const std::exception_ptr error = m_showError;
        m_showError = nullptr;
        std::rethrow_exception(error);
    }
    return m_modalResult;
}

void TfmBaseSingleForm::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    try {
        FormShow(this);
    } catch (...) {
        if (m_loop)
            m_showError = std::current_exception();
        else
            HandleCurrentException();
    }
    FitToScreen();
}

void TfmBaseSingleForm::FitToScreen()
{
    const QScreen *screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    if (!screen || !layout())
        return;
    const QRect area = screen->availableGeometry();
    // The frame is known only once a window manager has framed the window; until then, a title bar.
    QSize frame = frameGeometry().size() - size();
    if (frame.isEmpty())
        frame = QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this));
    const QSize room = area.size() - frame;
    layout()->activate();
    QSize needed = size().expandedTo(minimumSizeHint());
    if (layout()->sizeConstraint() == QLayout::SetFixedSize)
        needed = sizeHint();
    if (needed.width() > room.width() || needed.height() > room.height()) {
        if (!m_scrollBox) {
            m_scrollBox = new QScrollArea(this);
            m_scrollBox->setObjectName(QStringLiteral("sbMain"));
            m_scrollBox->setFrameShape(QFrame::NoFrame);
            m_scrollBox->setWidgetResizable(true);
            delete layout()->replaceWidget(pnlMain, m_scrollBox);
            m_scrollBox->setWidget(pnlMain);
            if (layout()->sizeConstraint() == QLayout::SetFixedSize)
                layout()->setSizeConstraint(QLayout::SetDefaultConstraint);
        }
        // A scroll bar one way takes room the other way.
        const int bar = m_scrollBox->verticalScrollBar()->sizeHint().width();
        if (needed.height() > room.height())
            needed.rwidth() += bar;
        if (needed.width() > room.width())
            needed.rheight() += bar;
        resize(needed.boundedTo(room));
    }
    // Moved into the area where it would stand out of it.
    const QSize outer = size() + frame;
    QPoint at = pos();
    at.setX(qBound(area.left(), at.x(), qMax(area.left(), area.right() + 1 - outer.width())));
    at.setY(qBound(area.top(), at.y(), qMax(area.top(), area.bottom() + 1 - outer.height())));
    if (at != pos())
        move(at);
}

void TfmBaseSingleForm::closeEvent(QCloseEvent *event)
{
    if (m_loop) {
        // Closing a modal window is cancelling it; the modal result does the rest.
        event->ignore();
        SetModalResult(mrCancel);
        return;
    }
    bool canClose = true;
    TCloseAction action = caHide;
    try {
        FormCloseQuery(this, canClose);
        if (canClose)
            FormClose(this, action);
    } catch (...) {
        canClose = false;
        HandleCurrentException();
    }
    if (!canClose || action == caNone) {
        event->ignore();
        return;
    }
    if (action == caFree)
        setAttribute(Qt::WA_DeleteOnClose);
    event->accept();
}

void TfmBaseSingleForm::reject()
{
    if (CancelButton && CancelButton->isEnabled() && CancelButton->isVisible())
        CancelButton->click();
}

void TfmBaseSingleForm::done(int result)
{
    if (m_loop)
        SetModalResult(result == QDialog::Accepted ? mrOk : mrCancel);
    else
        QDialog::done(result);
}

TModalButton::TModalButton(TfmBaseSingleForm *form, const QString &name, int modalResult, TAction *action)
    : QPushButton(form), ModalResult(modalResult), m_form(form), m_action(action)
{
    setObjectName(name);
    if (action) {
        setText(action->text());
        setEnabled(action->isEnabled());
        connect(action, &QAction::changed, this, [this] {
            setText(m_action->text());
            setEnabled(m_action->isEnabled());
            setVisible(m_action->isVisible());
        });
    }
    connect(this, &QPushButton::clicked, this, &TModalButton::Clicked);
}

void TModalButton::Clicked()
{
    m_form->SetModalResult(ModalResult);
    try {
        if (m_action)
            m_action->Execute();
    } catch (...) {
        HandleCurrentException();
    }
}

TfmDialog::TfmDialog(int parameter, QWidget *parent) : TfmBaseSingleForm(parameter, parent)
{
    actOK = new TAction(ActionList, QStringLiteral("actOK"), QStringLiteral("Принять"), 14);
    actCancel = new TAction(ActionList, QStringLiteral("actCancel"), QStringLiteral("Отмена"), 78);

    Panel1 = new QWidget(this);
    Panel1->setObjectName(QStringLiteral("Panel1"));
    Panel1->setFixedHeight(54);
    auto *bar = new QHBoxLayout(Panel1);
    bar->addStretch(1);
    AdvGlowButton1 = new TModalButton(this, QStringLiteral("AdvGlowButton1"), mrOk, actOK);
    AdvGlowButton2 = new TModalButton(this, QStringLiteral("AdvGlowButton2"), mrCancel, actCancel);
    AdvGlowButton1->setParent(Panel1);
    AdvGlowButton2->setParent(Panel1);
    AdvGlowButton1->setDefault(true);
    AdvGlowButton1->setAutoDefault(true);
    AdvGlowButton2->setAutoDefault(false);
    bar->addWidget(AdvGlowButton1);
    bar->addWidget(AdvGlowButton2);
    layout()->addWidget(Panel1);
    CancelButton = AdvGlowButton2;

    tmrFilter = CreateFilterTimer(this, [this](QTimer *timer) { tmrFilterTimer(timer); });
}

bool TfmDialog::Execute()
{
    return ShowModal() == mrOk;
}

void TfmDialog::FilterChange(QObject *)
{
    if (!tmrFilter->isActive())
        tmrFilter->start();
}

void TfmDialog::tmrFilterTimer(QObject *)
{
    tmrFilter->stop();
    RefreshFilterFrame(FilterFrame, tmrFilter);
}
