// SPDX-License-Identifier: MIT
// The watch that spares the readings file a stat() for every tagger: it must say "may have
// changed" for every way a file is changed on this machine, at once, and "no" otherwise.
#include "FileWatch.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "ReadingsStore.h"
#include "TinyDictionaries.h"

namespace fs = std::filesystem;
using zphonetic::tagger::FileWatch;

namespace {

class Watch : public ::testing::Test {
protected:
    std::string file() const { return dir_.path() + "/config/zphonetic/readings.txt"; }
    void write(const std::string& path, const std::string& bytes) const {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    }
    // Asked twice: the first answer after a change is yes, the next one no.
    static void expectChangedOnce(FileWatch& watch) {
        EXPECT_TRUE(watch.mayHaveChanged());
        EXPECT_FALSE(watch.mayHaveChanged());
    }
    tiny::TempDir dir_;
};

// The inotify descriptors this process holds.
int watchesOpen() {
    int open = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry.path(), error).string() == "anon_inode:inotify") ++open;
    }
    return open;
}

TEST_F(Watch, AFileAskedAboutSeldomIsLookedAtEveryTimeWithoutAWatch) {
    fs::create_directories(dir_.path() + "/config/zphonetic");
    write(file(), "还 huán\n");
    const int before = watchesOpen();
    FileWatch watch(file());
    for (long i = 0; i < FileWatch::kLooksBeforeWatching; ++i)
        ASSERT_TRUE(watch.mayHaveChanged()) << "call " << i;
    EXPECT_EQ(watchesOpen(), before);
    // Asked about that often, it is watched: looked at once more, then no more until a change.
    expectChangedOnce(watch);
    EXPECT_EQ(watchesOpen(), before + 1);
    write(file(), "还 hái\n");
    expectChangedOnce(watch);
}

TEST_F(Watch, EveryChangeOfTheFileIsNotedAtOnceAndNothingElseIs) {
    fs::create_directories(dir_.path() + "/config/zphonetic");
    FileWatch watch(file(), 0);
    expectChangedOnce(watch);  // never looked at
    EXPECT_FALSE(watch.mayHaveChanged());

    write(file(), "还 huán\n");  // made
    expectChangedOnce(watch);
    write(file(), "还 hái\n");  // written again in place
    expectChangedOnce(watch);
    write(file() + ".new", "还钱 huán qián\n");  // renamed over it, as the tools save it
    fs::rename(file() + ".new", file());
    expectChangedOnce(watch);
    fs::last_write_time(file(), fs::file_time_type::clock::now() - std::chrono::hours(1));
    expectChangedOnce(watch);
    fs::remove(file());
    expectChangedOnce(watch);
}

TEST_F(Watch, ADirectoryMadeOnTheWayToTheFileIsNoted) {
    FileWatch watch(file(), 0);  // neither config/ nor config/zphonetic/ exists
    expectChangedOnce(watch);
    fs::create_directories(dir_.path() + "/config");
    expectChangedOnce(watch);
    fs::create_directories(dir_.path() + "/config/zphonetic");
    expectChangedOnce(watch);
    write(file(), "还 huán\n");
    expectChangedOnce(watch);

    // Both made at once, then the file: noted whatever the order the watch saw them in.
    fs::remove_all(dir_.path() + "/config");
    expectChangedOnce(watch);
    fs::create_directories(dir_.path() + "/config/zphonetic");
    write(file(), "还 huán\n");
    EXPECT_TRUE(watch.mayHaveChanged());
    EXPECT_TRUE(zphonetic::tagger::stampOf(file()).exists);
}

TEST_F(Watch, AFileThatIsALinkIsLookedAtEveryTime) {
    fs::create_directories(dir_.path() + "/config/zphonetic");
    fs::create_directories(dir_.path() + "/dotfiles");
    write(dir_.path() + "/dotfiles/readings.txt", "还 huán\n");
    fs::create_symlink(dir_.path() + "/dotfiles/readings.txt", file());
    FileWatch watch(file(), 0);
    EXPECT_TRUE(watch.mayHaveChanged());
    // The file is changed in the link's target's directory, which the watch does not see.
    EXPECT_TRUE(watch.mayHaveChanged());
}

TEST_F(Watch, WhatTheKernelCannotNoteIsLookedAtOnceASecond) {
    // A hard link written through another directory changes the file without a note in its own.
    fs::create_directories(dir_.path() + "/config/zphonetic");
    fs::create_directories(dir_.path() + "/elsewhere");
    write(file(), "还 huán\n");
    fs::create_hard_link(file(), dir_.path() + "/elsewhere/readings.txt");
    FileWatch watch(file(), 0);
    expectChangedOnce(watch);
    write(dir_.path() + "/elsewhere/readings.txt", "还 hái\n");
    EXPECT_FALSE(watch.mayHaveChanged());
    ::usleep(1100 * 1000);
    EXPECT_TRUE(watch.mayHaveChanged());
}

}  // namespace
