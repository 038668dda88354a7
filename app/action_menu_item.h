#pragma once
// A menu entry of its own that runs an action: it can carry a caption other than the action's, and a menu
// can hold several entries of one action.

#include <QAction>
#include <QPointer>

class TAction;

class TActionMenuItem : public QAction
{
    Q_OBJECT
public:
    // Follows the action's caption unless `caption` is given; always follows its enabled and visible state.
    TActionMenuItem(TAction *action, QObject *owner, const QString &caption = QString());

    TAction *Action() const { return m_action; }

private:
    void Follow();

    QPointer<TAction> m_action;
    bool m_ownCaption;
};
