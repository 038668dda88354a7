#include "db_grid.h"

#include "grid_column.h"
#include "grid_summary.h"
#include "grid_view.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

TDBGrid::TDBGrid(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Grid"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_view = new TDBGridView(this);
    m_footer = new TGridFooter(m_view, this);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_footer);
    m_footer->setVisible(m_view->FooterVisible());
    connect(m_view, &TDBGridView::FooterVisibleChanged, m_footer, &QWidget::setVisible);
}

TGridFooter::TGridFooter(TDBGridView *view, QWidget *parent) : QWidget(parent), m_view(view)
{
    setObjectName(QStringLiteral("Footer"));
    const auto repaint = [this] { update(); };
    connect(view->Summary(), &TGridSummary::AfterSummary, this, repaint);
    connect(view->horizontalHeader(), &QHeaderView::sectionResized, this, repaint);
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, repaint);
    connect(view, &TDBGridView::ColumnsChanged, this, repaint);
}

QSize TGridFooter::sizeHint() const
{
    return QSize(100, fontMetrics().height() + 8);
}

void TGridFooter::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(rect().topLeft(), rect().topRight());
    painter.setPen(palette().color(QPalette::WindowText));
    const QHeaderView *header = m_view->horizontalHeader();
    // The view is a sibling, not a child: both are placed through their common window.
    const int offset = m_view->viewport()->mapTo(window(), QPoint(0, 0)).x() - mapTo(window(), QPoint(0, 0)).x();
    TGridSummary *summary = m_view->Summary();
    for (int i = 0; i < summary->Count(); ++i) {
        const TGridColumn *column = summary->At(i).Column;
        if (!column || !column->Visible())
            continue;
        const int section = column->Index();
        const QRect cell(offset + header->sectionViewportPosition(section), 0, header->sectionSize(section), height());
        painter.drawText(cell.adjusted(4, 0, -4, 0), Qt::AlignRight | Qt::AlignVCenter, summary->Text(i));
    }
}
