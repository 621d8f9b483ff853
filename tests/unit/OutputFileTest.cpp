#include <string>

#include <gtest/gtest.h>

#if defined(__linux__)
#include <sys/stat.h>
#include <unistd.h>

#include "linux/FileSizeLimit.h"
#endif

#include <Quorvex/core/OutputFile.h>

#include "StlTestFiles.h"

namespace {

using namespace stltest;

bool WriteAll(const std::string& path, const std::string& contents) {
    OutputFile file;
    return file.Open(path.c_str()) && file.Write(contents.data(), contents.size()) && file.Commit();
}

TEST(OutputFile, AppearsWholeOrNotAtAll) {
    const Directory directory;
    const std::string path = directory.Name("out");
    {
        OutputFile file;
        ASSERT_TRUE(file.Open(path.c_str()));
        ASSERT_TRUE(file.Write("never", 5));
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_EQ(directory.Entries(), 0U);

    EXPECT_TRUE(WriteAll(path, "first"));
    {
        OutputFile file;
        ASSERT_TRUE(file.Open(path.c_str()));
        const std::string much(300000, 'x');
        ASSERT_TRUE(file.Write(much.data(), much.size()));
        EXPECT_EQ(Contents(path), "first");
        ASSERT_TRUE(file.Open(directory.Name("other").c_str())); // lets go of the first
        ASSERT_TRUE(file.Commit());
        EXPECT_FALSE(file.Commit());
        EXPECT_FALSE(file.Write("x", 1));
    }
    EXPECT_EQ(Contents(path), "first");
    EXPECT_EQ(Contents(directory.Name("other")), "");
    EXPECT_TRUE(WriteAll(path, "2"));
    EXPECT_EQ(Contents(path), "2");
    EXPECT_EQ(directory.Entries(), 2U);
}

TEST(OutputFile, PlacesWithoutFilesFail) {
    const Directory directory;
    OutputFile file;
    EXPECT_FALSE(file.Open(nullptr));
    EXPECT_FALSE(file.Open(""));
    EXPECT_FALSE(file.Open(directory.Name("missing/out").c_str()));
    EXPECT_FALSE(file.Open(directory.Name("").c_str())); // the directory itself
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_FALSE(file.Commit());
    EXPECT_EQ(directory.Entries(), 0U);
}

TEST(OutputFile, NamesMayBeAsLongAsNamesCanBe) {
    const Directory directory;
    const std::string path = directory.Name(std::string(255, 'n'));
    EXPECT_TRUE(WriteAll(path, "text"));
    EXPECT_EQ(Contents(path), "text");
    EXPECT_EQ(directory.Entries(), 1U);
}

#if defined(__linux__)

TEST(OutputFile, FollowsLinksAndKeepsPermissions) {
    const Directory directory;
    fs::create_directory(directory.Name("elsewhere"));
    const std::string target = directory.Name("elsewhere/target");
    fs::create_symlink("elsewhere/link", directory.Name("link"));
    fs::create_symlink("target", directory.Name("elsewhere/link"));
    EXPECT_TRUE(WriteAll(directory.Name("link"), "new")); // the links lead to a file that is not there yet
    EXPECT_EQ(Contents(target), "new");
    ASSERT_EQ(chmod(target.c_str(), 0604), 0);
    EXPECT_TRUE(WriteAll(directory.Name("link"), "newer"));
    EXPECT_EQ(Contents(target), "newer");
    EXPECT_TRUE(fs::is_symlink(directory.Name("link")));
    EXPECT_TRUE(fs::is_symlink(directory.Name("elsewhere/link")));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms{0604});

    fs::create_symlink("circle", directory.Name("circle"));
    EXPECT_FALSE(WriteAll(directory.Name("circle"), "x"));

    const mode_t mask = umask(027);
    EXPECT_TRUE(WriteAll(directory.Name("fresh"), "x"));
    umask(mask);
    EXPECT_EQ(fs::status(directory.Name("fresh")).permissions(), fs::perms{0640});
}

TEST(OutputFile, DevicesAreWrittenDirectly) {
    EXPECT_TRUE(WriteAll("/dev/null", "text"));
    // Small writes wait in a buffer, so that only the end finds out; large ones fail at once.
    for (const std::size_t size : {std::size_t{1}, std::size_t{1} << 22U}) {
        EXPECT_FALSE(WriteAll("/dev/full", std::string(size, 'x')));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(OutputFile, AFullDiskLeavesWhatWasThere) {
    const Directory directory;
    const std::string path = directory.Name("out");
    ASSERT_TRUE(WriteAll(path, "before"));
    for (const std::size_t size : {std::size_t{20000}, std::size_t{1} << 22U}) {
        const FileSizeLimit limit(10000);
        EXPECT_FALSE(WriteAll(path, std::string(size, 'x')));
    }
    EXPECT_EQ(Contents(path), "before");
    EXPECT_EQ(directory.Entries(), 1U);
}

// Permissions do not bind the administrator, who may however step down for a while.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            EXPECT_EQ(seteuid(nobody), 0);
        }
    }
    ~OrdinaryUser() {
        if (getuid() == 0) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

TEST(OutputFile, ObeysPermissions) {
    const Directory directory;
    const std::string locked = directory.Name("locked");
    fs::create_directory(locked);
    const std::string writable = directory.Write("before", "locked/writable");
    const std::string readable = directory.Write("before", "readable");
    ASSERT_EQ(chmod(writable.c_str(), 0666), 0);
    ASSERT_EQ(chmod(readable.c_str(), 0444), 0);
    ASSERT_EQ(chmod(locked.c_str(), 0555), 0);
    ASSERT_EQ(chmod(directory.Name("").c_str(), 0777), 0);
    {
        const OrdinaryUser user;
        EXPECT_FALSE(WriteAll(directory.Name("locked/new"), "x"));
        EXPECT_FALSE(WriteAll(readable, "x")); // though the directory would allow another file of that name
        EXPECT_TRUE(WriteAll(writable, "directly"));
        EXPECT_EQ(Contents(writable), "directly");
        {
            OutputFile given_up;
            ASSERT_TRUE(given_up.Open(writable.c_str()));
            ASSERT_TRUE(given_up.Write("half", 4));
        }
        EXPECT_EQ(Contents(writable), ""); // the old contents are lost, but half a file is not left either
        EXPECT_EQ(Contents(readable), "before");
    }
    ASSERT_EQ(chmod(locked.c_str(), 0777), 0);
}

#endif

} // namespace
