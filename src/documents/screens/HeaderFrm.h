#pragma once

#include <QDialog>

class QLabel;
class QTextEdit;

namespace pvardo::documents {

class FormatToolbar;

// " Define Header": the letterhead of the office's reports and letters. The
// heading is kept as gTitle.rtf in the forms folder and goes into "%mh"; the
// logo and the signature are the pictures memos/logo.bmp and memos/sig.bmp of
// the master database folder, for "%lo" and "%si". Any picture this program
// reads is taken; it is kept under those names.
class HeaderFrm : public QDialog
{
    Q_OBJECT

public:
    explicit HeaderFrm(QWidget* parent = nullptr);

    // Reads gTitle.rtf into the box and its text into the session's heading.
    // Without the file the box stays empty and the heading as it was.
    void Loadheader();

    // Saves the box as gTitle.rtf, makes it the heading and closes.
    void Command1();
    // Closes without saving.
    void Command2();
    // Chooses the logo or the signature picture.
    void chooseLogo();
    void chooseSignature();

    static QString headerPath();
    static QString logoPath();
    static QString signaturePath();

private:
    void choosePicture(const QString& target, QLabel* preview);
    static void showPicture(const QString& path, QLabel* preview);

    QTextEdit* m_text = nullptr;
    FormatToolbar* m_toolbar = nullptr;
    QLabel* m_logo = nullptr;
    QLabel* m_signature = nullptr;
};

} // namespace pvardo::documents
