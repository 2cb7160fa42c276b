#pragma once

#include "documents/Labels.h"

#include <QDialog>
#include <QList>
#include <QPixmap>

class QLabel;
class QLineEdit;
class QListWidget;

namespace pvardo::documents {

// The picture of a label sheet; a click on it picks the cell the labels start
// in, which it marks.
class LabelSheetPicture : public QWidget
{
    Q_OBJECT

public:
    explicit LabelSheetPicture(QWidget* parent = nullptr);

    void setSheet(const LabelSheet& sheet, const QPixmap& picture);
    void markCell(int column, int row);
    void setTakesClicks(bool takes) { m_takesClicks = takes; }

signals:
    void cellPicked(int column, int row);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    LabelSheet m_sheet;
    QPixmap m_picture;
    int m_column = 1;
    int m_row = 1;
    bool m_takesClicks = true;
};

// The label window " Labels": the sheet from the catalogue of the labels
// folder, the cell the first label goes into and the sheet's offsets. Print
// leaves them in the label state with the run on and StopFlag off; Cancel
// leaves StopFlag set.
class LabelFrm : public QDialog
{
    Q_OBJECT

public:
    explicit LabelFrm(QWidget* parent = nullptr);

    // An offset as the window lets it stand when its box is left: below 0.4
    // is "0.4", above 3 is "3"; anything else as typed.
    static QString checkMargins(const QString& value);

    void command3(); // Print
    void command2(); // Cancel

private:
    void chooseSheet(int index);
    void pickCell(int column, int row);

    QString m_folder;
    QList<LabelSheetEntry> m_entries;
    LabelSheet m_sheet;
    QListWidget* m_list = nullptr;
    LabelSheetPicture* m_picture = nullptr;
    QLabel* m_description = nullptr;
    QLineEdit* m_column = nullptr;
    QLineEdit* m_row = nullptr;
    QLineEdit* m_top = nullptr;
    QLineEdit* m_left = nullptr;
};

// The label window for a run of labels, modal: true when it was left with
// Print, the sheet, start cell and offsets then in the label state.
bool chooseLabelSheet(QWidget* parent = nullptr);

// A label for each addressee, as the label state says, on the office's
// printer (or, without one, into a PDF file the user is told of).
bool printLabelRun(const QList<Addressee>& addressees);

// A screen's label run: the label window, then the labels. False when the
// window was cancelled or the printing failed.
bool printMailingLabels(const QList<Addressee>& addressees, QWidget* parent = nullptr);

} // namespace pvardo::documents
