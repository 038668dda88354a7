#pragma once
// A drop-down list of the rows of a list dataset: shows the list field, holds the key. With free typing
// on, text that names no row is offered to the owner, who may add it to the list.

#include "edit_properties.h"
#include "value_editor.h"

#include <QComboBox>
#include <QPointer>

class TLookupList;

class TLookupComboBox : public QComboBox, public TValueEditor
{
    Q_OBJECT
public:
    explicit TLookupComboBox(QWidget *parent = nullptr);

    // Takes the list source, fields and drop-down style of a copy of a column's settings.
    void SetProperties(const TEditProperties &properties);
    const TEditProperties &Properties() const { return m_properties; }

    QVariant EditValue() const override;
    void SetEditValue(const QVariant &value) override;

    // Typed text that matches no row, with free typing on. The handler may add a row to the list and
    // reopen it; the editor then takes the row of that text when there is one.
    std::function<void(const QString &text)> OnNewLookupDisplayText;

    // Rereads the rows of the list.
    void ReloadList();
    // Takes up what is typed as leaving the editor would: a known text picks its row, an unknown one
    // goes to OnNewLookupDisplayText first.
    void ValidateTyping() { TypingFinished(); }

    // A long entry does not widen the editor, and so its window, beyond this; it is shown elided.
    static constexpr int MaxHintWidth = 400;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    void NewDisplayText(const QString &text);

protected:
    void initStyleOption(QStyleOptionComboBox *option) const override;

private:
    void TypingFinished();
    void Picked(int index);
    int IndexOfKey(const QVariant &key) const;

    TEditProperties m_properties{TEditKind::Lookup};
    QPointer<TLookupList> m_list;
    QVariant m_value;
    bool m_showing = false;
};
