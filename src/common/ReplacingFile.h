#pragma once

#include <QIODevice>
#include <QString>

namespace pvardo {

// A file written beside its final name and put in place whole: the bytes go
// to a temporary file in the same folder, which commit() flushes to the disk,
// checks and renames over the old file. Every write is checked as it is made,
// so a full disk, a quota or a size limit that refuses the last few bytes is
// noticed before the rename and the old file stays as it was.
//
// A new file takes the modes the process's umask allows (group members of a
// shared folder can open it); a replaced file keeps the modes of the old one.
// Anything not committed is removed when the object goes.
class ReplacingFile : public QIODevice
{
    Q_OBJECT

public:
    explicit ReplacingFile(const QString& path, QObject* parent = nullptr);
    ~ReplacingFile() override;

    // Opens the temporary file; only QIODevice::WriteOnly is accepted.
    bool open(OpenMode mode) override;
    // Writers that go back to fill in a length (a PDF's cross-references)
    // may seek within what they have written.
    bool seek(qint64 position) override;
    qint64 size() const override;

    // Puts the file in place. Gives false when any byte did not reach the
    // disk or the rename failed; the old file is then untouched and
    // errorText() says why.
    bool commit();
    // Drops what was written; the old file stays.
    void cancel();

    QString errorText() const { return m_error; }
    QString fileName() const { return m_path; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    void failWith(int systemError, const char* what);
    void discard();

    QString m_path;
    QString m_temporary;
    int m_fd = -1;
    QString m_error;
};

// The modes a new file gets: read and write for all, less what the process's
// umask takes away.
int newFileMode();
// The same for a new folder (with the search bits).
int newFolderMode();

// The reason of a failed write, in the words an office understands: a full
// disk is called so.
QString writeFailureText(int systemError);

} // namespace pvardo
