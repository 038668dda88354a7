#pragma once
// What a data link needs of an editor: read and show a value, and a word when the user changes it.

#include <QVariant>
#include <functional>

class TValueEditor
{
public:
    virtual ~TValueEditor() = default;

    virtual QVariant EditValue() const = 0;
    // Shows a value; this is no change by the user.
    virtual void SetEditValue(const QVariant &value) = 0;

    // Called after each change made by the user.
    std::function<void()> OnUserChange;

protected:
    void UserChanged()
    {
        if (OnUserChange)
            OnUserChange();
    }
};
