#pragma once
// A grid of rights, one row per role and action: the right is chosen in place in its one editable
// column and saved at once through spRolesActionsEdit. A refusal by the database (the administrator's
// rights) springs back in the grid and is shown.

#include <QString>

class TGridFrame;

class TRightsGrid
{
public:
    explicit TRightsGrid(TGridFrame *frame) : m_frame(frame) {}

    // Editing for the view and for the right's column; all other columns stay read-only.
    void AllowRightEditing() const;
    // Saves the right of the focused row, then refreshes; on any failure refreshes and shows the message.
    void SaveRight() const;

    static const QString RoleColumn;
    // Where a view lacks RoleColumn, the role comes from here.
    static const QString RoleNameColumn;
    static const QString ActionColumn;
    static const QString RightColumn;

private:
    TGridFrame *m_frame;
};
