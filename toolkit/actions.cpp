#include "actions.h"

#include "app_exception.h"

TActionList::TActionList(QObject *owner, const QString &name) : QObject(owner)
{
    setObjectName(name);
}

TActionList::~TActionList()
{
    // The actions outlive the list's members while QObject deletes them.
    for (TAction *action : std::as_const(m_actions))
        action->m_list = nullptr;
}

TAction *TActionList::FindAction(const QString &name) const
{
    for (TAction *action : m_actions)
        if (action->objectName() == name)
            return action;
    return nullptr;
}

TAction::TAction(TActionList *list, const QString &name, const QString &caption, int imageIndex)
    : QAction(caption, list), ImageIndex(imageIndex), m_list(list)
{
    setObjectName(name);
    setToolTip(caption);
    if (m_list)
        m_list->m_actions.append(this);
    connect(this, &QAction::triggered, this, &TAction::Triggered);
}

TAction::~TAction()
{
    if (m_list)
        m_list->m_actions.removeAll(this);
}

bool TAction::Execute()
{
    if (!isEnabled())
        return false;
    bool handled = false;
    if (m_list && m_list->OnExecute)
        m_list->OnExecute(this, handled);
    if (!handled && OnExecute)
        OnExecute(this);
    return true;
}

void TAction::Triggered()
{
    try {
        Execute();
    } catch (...) {
        HandleCurrentException();
    }
}
