#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace pvardo::test {

// Zeroes the first leaf page of `table` in the file at `path`, as a failing
// disk leaves it: the rows on that page can no longer be read back.
inline void zeroFirstLeafPage(const QString& path, const char* table)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    sqlite3_stmt* statement = nullptr;
    const QByteArray sql = QByteArray("SELECT pageno FROM dbstat WHERE name = '") + table
        + "' AND pagetype = 'leaf' ORDER BY pageno LIMIT 1";
    ASSERT_EQ(sqlite3_prepare_v2(db, sql.constData(), -1, &statement, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
    const qint64 page = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    sqlite3_close(db);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek((page - 1) * 4096));
    file.write(QByteArray(4096, '\0'));
}

} // namespace pvardo::test
