#include "tests/core/site_change.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <memory>
#include <sched.h>
#include <string>
#include <string_view>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace corvrec
{

namespace
{

// Gives this process a mount namespace of its own, which ends with it. Returns the reason for a failure, or
// empty.
std::string OwnMounts()
{
    static const std::string refusal = [] {
        if (::geteuid() != 0)
            return std::string("only root may mount");
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) != 0)
            return std::string("no mounts of our own: ") + std::strerror(errno);
        return std::string();
    }();
    return refusal;
}

enum class FileSystem { tmpfs, ext4, ext4SmallBlocks };

// A small empty file system, mounted during the object's lifetime.
class SmallDisk
{
public:
    explicit SmallDisk(FileSystem kind)
    {
        refusal_ = OwnMounts();
        if (!refusal_.empty())
            return;
        if (kind == FileSystem::tmpfs)
            MountTmpfs();
        else
            MountExt4(kind == FileSystem::ext4 ? "4096" : "1024");
    }
    ~SmallDisk()
    {
        if (refusal_.empty())
            ::umount2(Root().c_str(), MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    SmallDisk(SmallDisk&&) = delete;
    SmallDisk& operator=(SmallDisk&&) = delete;

    // Why there is no file system; empty when it is mounted.
    [[nodiscard]] const std::string& Refusal() const { return refusal_; }
    [[nodiscard]] std::string Root() const { return place_.Directory() / "disk"; }
    [[nodiscard]] std::string File() const { return Root() + "/Corvrec.ini"; }

    // Fills the disk, except for this number of bytes rounded to blocks.
    void FillUpTo(std::size_t rest)
    {
        std::filesystem::remove(Filling());
        const int file = ::open(Filling().c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        const std::string block(512, 'f');
        for (int round = 0; round < 3; ++round) { // syncing may release reserved blocks
            while (::write(file, block.data(), block.size()) > 0) {
            }
            ::fsync(file);
        }
        struct stat filled {
        };
        EXPECT_EQ(::fstat(file, &filled), 0);
        EXPECT_EQ(::ftruncate(file, std::max<off_t>(filled.st_size - static_cast<off_t>(rest), 0)), 0);
        ::fsync(file);
        ::close(file);
    }
    void MakeRoom() const { std::filesystem::remove(Filling()); }

    // Returns false when the mount could not be changed.
    [[nodiscard]] bool SetReadOnly(bool isReadOnly) const
    {
        const unsigned long flags = isReadOnly ? MS_REMOUNT | MS_RDONLY : MS_REMOUNT;
        return ::mount("none", Root().c_str(), "none", flags, nullptr) == 0;
    }

private:
    [[nodiscard]] std::string Filling() const { return Root() + "/filling"; }

    void MountTmpfs()
    {
        std::filesystem::create_directory(Root());
        if (::mount("none", Root().c_str(), "tmpfs", 0, "size=256k") != 0)
            refusal_ = std::string("no tmpfs: ") + std::strerror(errno);
    }

    // Uses programs of e2fsprogs and mount, which every Debian has.
    void MountExt4(const std::string& blockSize)
    {
        std::filesystem::create_directory(Root());
        const std::string image = place_.Directory() / "image";
        std::ofstream(image).close();
        std::filesystem::resize_file(image, 1U << 20);
        const std::string quiet = " > " + (place_.Directory() / "log").string() + " 2>&1";
        const std::string make =
            "PATH=$PATH:/sbin:/usr/sbin mkfs.ext4 -q -F -m 0 -O ^has_journal -b " + blockSize;
        if (std::system((make + " " + image + quiet).c_str()) != 0)
            refusal_ = "mkfs.ext4 is missing or failed";
        else if (std::system(("mount -o loop " + image + " " + Root() + quiet).c_str()) != 0)
            refusal_ = "no loop device can be mounted here";
    }

    SettingsFile place_; // a directory of its own
    std::string refusal_;
};

// Makes the change. Returns the number of refused calls, each of which left the file unchanged.
std::size_t RefusedSteps(const Scenario& scenario, const std::string& path)
{
    ProbedCalls calls;
    const auto profile = OpenProfileFile(path, calls);
    SteppedFile file(*profile, calls, path);
    scenario.change.run(file, scenario.code);
    return static_cast<std::size_t>(std::ranges::count(file.Steps(), false, &Step::isDone));
}

void Rewrite(const std::string& path, std::string_view bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// A comment before everything else, to shift the position of the file's end within its last block.
std::string WithComment(std::string bytes, std::size_t length)
{
    return ";" + std::string(length, 'c') + "\r\n" + std::move(bytes);
}

std::vector<Scenario> Scenarios()
{
    std::vector<Scenario> scenarios = ScenariosOver(8, FileForm::crLf, {4});
    const auto odd = ScenariosOver(8, FileForm::odd, {0});
    scenarios.insert(scenarios.end(), odd.begin(), odd.end());
    return scenarios;
}

class FullDisk : public testing::TestWithParam<FileSystem>
{
};

// Ranges from a disk with room for part of the save to one that is full.
TEST_P(FullDisk, RefusesCallsAndLosesNothing)
{
    SmallDisk disk(GetParam());
    if (!disk.Refusal().empty())
        GTEST_SKIP() << disk.Refusal();
    std::size_t refused = 0;
    for (const Scenario& scenario : Scenarios()) {
        for (const std::size_t rest : {0U, 1024U}) {
            for (std::size_t comment = 0; comment <= 3500;
                 comment += SampleOrAll<std::size_t>(700, 1400, 700)) {
                SCOPED_TRACE(scenario.Name() + ", " + std::to_string(rest) + " free, comment of " +
                             std::to_string(comment));
                disk.MakeRoom();
                std::filesystem::remove(disk.File());
                Rewrite(disk.File(), WithComment(scenario.Before(), comment));
                disk.FillUpTo(rest);
                refused += RefusedSteps(scenario, disk.File());

                disk.MakeRoom();
                EXPECT_EQ(RefusedSteps(scenario, disk.File()), 0U);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
    std::cout << refused << " refused calls\n";
    EXPECT_GT(refused, 0U);
}

std::string NameOf(const testing::TestParamInfo<FileSystem>& test)
{
    constexpr std::array names = {"tmpfs", "ext4", "ext4WithSmallBlocks"};
    return names.at(static_cast<std::size_t>(test.param));
}

INSTANTIATE_TEST_SUITE_P(All, FullDisk,
                         testing::Values(FileSystem::tmpfs, FileSystem::ext4, FileSystem::ext4SmallBlocks),
                         NameOf);

TEST(ReadOnlyDisk, RefusesAllCallsAndLosesNothing)
{
    SmallDisk disk(FileSystem::tmpfs);
    if (!disk.Refusal().empty())
        GTEST_SKIP() << disk.Refusal();
    for (const Scenario& scenario : Scenarios()) {
        SCOPED_TRACE(scenario.Name());
        Rewrite(disk.File(), scenario.Before());
        ASSERT_TRUE(disk.SetReadOnly(true));

        EXPECT_EQ(RefusedSteps(scenario, disk.File()), Rehearsal(scenario).steps.size());

        EXPECT_EQ(BytesOf(disk.File()), scenario.Before());
        ASSERT_TRUE(disk.SetReadOnly(false));
        EXPECT_EQ(RefusedSteps(scenario, disk.File()), 0U);
    }
}

// Ignores the signal, as the program does, so that the limit is an ordinary error.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : handler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &old_), 0);
        const rlimit limit = {.rlim_cur = bytes, .rlim_max = old_.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

private:
    void (*handler_)(int);
    rlimit old_{};
};

TEST(LimitedFileSize, RefusesCallsAndLosesNothing)
{
    std::size_t refused = 0;
    for (const Scenario& scenario : Scenarios()) {
        const std::string before = scenario.Before();
        for (const std::size_t more : {0U, 1U, 7U, 50U, 100U, 200U, 300U, 400U, 600U}) {
            SCOPED_TRACE(scenario.Name() + ", " + std::to_string(more) + " bytes more");
            const SettingsFile settings(before);
            {
                const FileSizeLimit limit(before.size() + more);
                refused += RefusedSteps(scenario, settings.Path());
            }
            EXPECT_EQ(RefusedSteps(scenario, settings.Path()), 0U);
            ASSERT_FALSE(HasFailure());
        }
    }
    std::cout << refused << " refused calls\n";
    EXPECT_GT(refused, 0U);
}

} // namespace

} // namespace corvrec
