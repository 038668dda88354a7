#pragma once
// The grid control: the table view with its footer of sums beneath it.

#include <QWidget>

class TDBGridView;
class TGridFooter;

class TDBGrid : public QWidget
{
    Q_OBJECT
public:
    explicit TDBGrid(QWidget *parent = nullptr);

    TDBGridView *View() const { return m_view; }
    TGridFooter *Footer() const { return m_footer; }

private:
    TDBGridView *m_view;
    TGridFooter *m_footer;
};

// The sums of the view's summary, each under its column.
class TGridFooter : public QWidget
{
    Q_OBJECT
public:
    explicit TGridFooter(TDBGridView *view, QWidget *parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    TDBGridView *m_view;
};
