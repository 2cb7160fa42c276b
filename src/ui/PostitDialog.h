#pragma once

#include <QDialog>

class QPlainTextEdit;

namespace pvardo::ui {

// The dialog `Postit`: the note that goes with a parcel's flags, shown before
// a record is written on a flagged parcel and from the notepad command. The
// user goes on (NoteOveride), stops (NoteCancel) or opens the note for typing
// (noteEdit); a change goes back to the parcel only when the user goes on.
class PostitDialog : public QDialog
{
    Q_OBJECT

public:
    PostitDialog(const QString& note, const QString& sbl, const QString& name, QWidget* parent = nullptr);

    // Opens the note for typing at once, as for a parcel without a note.
    void startEditing();
    QString note() const;
    bool noteChanged() const;

private:
    QPlainTextEdit* m_note = nullptr;
    QString m_original;
};

} // namespace pvardo::ui
