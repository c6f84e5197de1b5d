#include "platform/data_file.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/platform.h"
#include "testing/test_support.h"

namespace qb {
namespace {

using testing::readFile;
using testing::TempDir;
using testing::writeFile;

// Opening a damaged or foreign file must fail, name the file and change
// nothing in it.
void expectRefusedUntouched(const std::string& path, const std::string& bytes) {
    std::unique_ptr<DataFile> file;
    Status s = DataFile::open(path, &file);
    EXPECT_FALSE(s.isOk());
    EXPECT_NE(s.message().find(path), std::string::npos) << s.message();
    EXPECT_EQ(file, nullptr);
    EXPECT_EQ(readFile(path), bytes);
}

std::string makeSqliteFile(const std::string& path, const char* sql) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return readFile(path);
}

TEST(DataFileTest, AFileThatIsNotAStoreIsRefusedAndLeftAlone) {
    TempDir dir;
    std::string garbage(8192, 'x');
    writeFile(dir.file("garbage.db"), garbage);
    expectRefusedUntouched(dir.file("garbage.db"), garbage);

    std::string foreign =
        makeSqliteFile(dir.file("foreign.db"), "CREATE TABLE t(a); INSERT INTO t VALUES (1);");
    expectRefusedUntouched(dir.file("foreign.db"), foreign);

    // A real store cut short: the header promises pages that are not there.
    {
        std::unique_ptr<Platform> p;
        ASSERT_TRUE(Platform::open(dir.file("full"), &p).isOk());
        p->registry().createKey(RegRoot::HKEY_CURRENT_USER, "Software\\Quillarbor");
    }
    std::string whole = readFile(dir.file("full/quillarbor.db"));
    std::string cut = whole.substr(0, 100) + std::string(60, '\0');
    writeFile(dir.file("truncated.db"), cut);
    expectRefusedUntouched(dir.file("truncated.db"), cut);
}

TEST(DataFileTest, AnEmptyFileBecomesANewStore) {
    TempDir dir;
    writeFile(dir.file("empty.db"), "");
    std::unique_ptr<DataFile> file;
    EXPECT_TRUE(DataFile::open(dir.file("empty.db"), &file).isOk());
}

TEST(DataFileTest, PermissionProblemsAreReported) {
    if (geteuid() == 0) GTEST_SKIP() << "root reads and writes regardless of permissions";
    TempDir dir;
    {
        std::unique_ptr<Platform> p;
        ASSERT_TRUE(Platform::open(dir.path(), &p).isOk());
    }
    std::string path = dir.file("quillarbor.db");
    chmod(path.c_str(), 0);
    std::unique_ptr<DataFile> file;
    Status s = DataFile::open(path, &file);
    EXPECT_FALSE(s.isOk());
    EXPECT_NE(s.message().find(path), std::string::npos);
    chmod(path.c_str(), 0600);

    TempDir readOnly;
    chmod(readOnly.path().c_str(), 0500);
    std::unique_ptr<Platform> p;
    EXPECT_FALSE(Platform::open(readOnly.path() + "/sub", &p).isOk());
    EXPECT_FALSE(Platform::open(readOnly.path(), &p).isOk());
    chmod(readOnly.path().c_str(), 0700);
}

TEST(DataFileTest, BatchesCommitTogetherOrNotAtAll) {
    auto file = DataFile::openInMemory();
    ObjectStore store(*file);
    CEOID oid = store.createDatabase({u"T", 1, {makePropId(1, CEVT_UI4)}});
    auto db = store.openDatabase(&oid, u"", 0);
    ASSERT_TRUE(file->beginBatch());
    ASSERT_TRUE(file->beginBatch()) << "batches nest";
    db->writeProps(0, {CEPROPVAL::ui4(1, 1)});
    EXPECT_TRUE(file->commitBatch());
    EXPECT_TRUE(file->inBatch());
    db->writeProps(0, {CEPROPVAL::ui4(1, 2)});
    file->rollbackBatch();
    EXPECT_EQ(db->seek(CEDB_SEEK_BEGINNING, 0), 0u);
    EXPECT_FALSE(file->commitBatch());
}

}  // namespace
}  // namespace qb
