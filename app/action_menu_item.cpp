#include "action_menu_item.h"

#include "actions.h"

TActionMenuItem::TActionMenuItem(TAction *action, QObject *owner, const QString &caption)
    : QAction(caption.isEmpty() ? action->text() : caption, owner), m_action(action), m_ownCaption(!caption.isEmpty())
{
    setObjectName(action->objectName() + QStringLiteral("Item"));
    setIcon(action->icon());
    Follow();
    connect(action, &QAction::changed, this, &TActionMenuItem::Follow);
    // Through the action's own trigger, so that its exceptions end in the application's handler.
    connect(this, &QAction::triggered, this, [this] {
        if (m_action)
            m_action->trigger();
    });
}

void TActionMenuItem::Follow()
{
    if (!m_action)
        return;
    if (!m_ownCaption)
        setText(m_action->text());
    setToolTip(m_action->toolTip());
    setEnabled(m_action->isEnabled());
    setVisible(m_action->isVisible());
}
