#pragma once
// Named commands with a shared hook that runs before each command's own handler, as tool buttons,
// menus and code execute them.

#include <QAction>
#include <QList>
#include <functional>

class TAction;

class TActionList : public QObject
{
    Q_OBJECT
public:
    explicit TActionList(QObject *owner = nullptr, const QString &name = QString());
    ~TActionList() override;

    // Runs for every action of the list before its own handler; setting `handled` skips the handler.
    std::function<void(TAction *action, bool &handled)> OnExecute;

    QList<TAction *> Actions() const { return m_actions; }
    TAction *FindAction(const QString &name) const;

private:
    friend class TAction;
    QList<TAction *> m_actions;
};

class TAction : public QAction
{
    Q_OBJECT
public:
    TAction(TActionList *list, const QString &name, const QString &caption, int imageIndex = -1);
    ~TAction() override;

    TActionList *ActionList() const { return m_list; }
    int ImageIndex;
    std::function<void(QObject *sender)> OnExecute;

    bool Enabled() const { return isEnabled(); }
    void SetEnabled(bool value) { setEnabled(value); }
    bool Visible() const { return isVisible(); }
    void SetVisible(bool value) { setVisible(value); }

    // Executes through the action: nothing runs while it is disabled. Exceptions reach the caller.
    // True when something ran.
    bool Execute();

private:
    friend class TActionList;
    // A button or menu fired the action: exceptions end in the application's handler.
    void Triggered();

    TActionList *m_list;
};
