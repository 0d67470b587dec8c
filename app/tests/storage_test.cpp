// The user's files: a crash between writing and renaming keeps the old file,
// and a file that cannot be read is set aside rather than overwritten.
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "app/storage.h"
#include "tripkit/checklist.h"

namespace roamwise::app {
namespace {

using namespace tripkit;

std::string contents(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return "<none>";
    return file.readAll().toStdString();
}

TEST(StorageTest, ACrashBetweenWriteAndRenameLeavesTheOldFile) {
    QTemporaryDir folder;
    const std::vector<PackingItem> before = {{"passport", "Passport", true}};
    UserFiles::writeList(folder.path(), UserFiles::packing, before);
    const QString path = folder.path() + "/" + UserFiles::packing;
    const std::string old = contents(path);

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // The process dies with the new bytes written but not yet renamed.
        beforeCommitForTesting = [] { ::_exit(0); };
        UserFiles::writeList(folder.path(), UserFiles::packing,
                             std::vector<PackingItem>{{"towel", "Towel", false}});
        ::_exit(1);  // not reached when the hook runs
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), 0) << "the write never reached its rename";

    EXPECT_EQ(contents(path), old);
    EXPECT_EQ(UserFiles::readList<PackingItem>(folder.path(), UserFiles::packing, Day::fromCivil(2026, 1, 1)),
              before);
}

TEST(StorageTest, AnUnreadableFileIsSetAsideAndNeverOverwritten) {
    QTemporaryDir folder;
    const Day today = Day::fromCivil(2026, 11, 20);
    const QString path = folder.path() + "/" + UserFiles::watches;
    const std::string broken = "[{\"id\": \"half a wat";
    for (int round = 0; round < 2; ++round) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(broken.data(), static_cast<qint64>(broken.size()));
        file.close();
        std::string problem;
        EXPECT_TRUE(UserFiles::readList<PackingItem>(folder.path(), UserFiles::watches, today, &problem).empty());
        EXPECT_NE(problem.find("watches.json"), std::string::npos) << problem;
        EXPECT_FALSE(QFile::exists(path));
        // The next save writes a new file beside the kept one.
        UserFiles::writeList(folder.path(), UserFiles::watches, std::vector<PackingItem>{});
    }
    EXPECT_EQ(contents(path + ".unreadable-2026-11-20"), broken);
    EXPECT_EQ(contents(path + ".unreadable-2026-11-20-2"), broken);
    EXPECT_EQ(contents(path), "[]\n");
    // A missing file is simply an empty list, and nothing is set aside.
    EXPECT_TRUE(UserFiles::readList<PackingItem>(folder.path(), UserFiles::packing, today).empty());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 3);
}

}  // namespace
}  // namespace roamwise::app
