#include "tests/support/probed_calls.h"
#include "tests/support/settings_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace corvrec
{

namespace
{

using testing::ElementsAre;

// A file of a few pages: "[Siti]", some other lines, and sites of 34 keys.
std::string SampleBytes()
{
    std::string bytes = "; settings\r\n[Siti]\r\nMI=Milano\r\n\r\n[General]\r\nCom=COM1\r\n";
    for (const std::string site : {"AA", "BB", "CC", "DD", "EE", "FF", "GG", "HH"}) {
        bytes += "[" + site + "]\r\n";
        for (int key = 0; key < 34; ++key)
            bytes += "Chiave" + std::to_string(key) + "=" + site + " value\r\n";
    }
    return bytes + "[MI]\r\nOgni= 3600\r\nOra=08:00";
}

struct stat StatusOf(const std::filesystem::path& path)
{
    struct stat status {
    };
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status;
}

// Waits until a change of another file would get a different time than this file has. Takes milliseconds.
void AwaitNextTick(const SettingsFile& file)
{
    const timespec time = StatusOf(file.Path()).st_ctim;
    const auto other = file.Directory() / "tick";
    for (;;) {
        std::ofstream(other) << "x";
        const timespec now = StatusOf(other).st_ctim;
        if (now.tv_sec != time.tv_sec || now.tv_nsec != time.tv_nsec)
            break;
    }
    std::filesystem::remove(other);
}

// A settings file opened over probed calls.
class Probed
{
public:
    explicit Probed(std::optional<std::string_view> bytes = std::nullopt)
        : file(bytes)
        , profile(OpenProfileFile(file.Path(), calls))
    {
    }

    // Makes the snapshot old enough to be trusted.
    void Trust()
    {
        calls.LetFilesAge();
        profile->Read("General", "Com", "", 100);
        calls.ForgetMade();
    }

    // The calls that the next read makes.
    std::vector<std::string> CallsOfARead()
    {
        calls.ForgetMade();
        profile->Read("General", "Com", "", 100);
        return calls.Made();
    }

    ProbedCalls calls;
    SettingsFile file;
    std::unique_ptr<ProfileFile> profile;
};

const std::vector<std::string> kTrusted{"stat"};
const std::vector<std::string> kCompared{"stat", "open", "pread", "fstat", "close"};
const std::vector<std::string> kComparedAndFoundLocal{"stat", "open", "pread", "fstat", "fstatfs", "close"};

// An operation on the trusted file, and the system calls that it makes.
struct Cost {
    const char* name;
    std::string bytes;
    bool (*run)(ProfileFile&);
    std::vector<std::string> calls;
};

TEST(ProfileFileCost, IsTheseCallsForATrustedSnapshot)
{
    const std::vector<Cost> costs{
        {"a read",
         SampleBytes(),
         [](ProfileFile& file) { return file.Read("DD", "Chiave33", "none", 100) == "DD value"; },
         {"stat"}},
        {"a list",
         SampleBytes(),
         [](ProfileFile& file) { return file.Keys("General", "none", 500) == std::string("Com\0", 4); },
         {"stat"}},
        {"an equal value",
         SampleBytes(),
         [](ProfileFile& file) { return file.Write("General", "Com", "COM1"); },
         {"open", "fstat", "pread", "close"}},
        {"a value of the same length",
         SampleBytes(),
         [](ProfileFile& file) { return file.Write("General", "Com", "COM2"); },
         {"open", "fstat", "pread", "pwrite", "fstat", "close"}},
        {"a new line at the end",
         SampleBytes(),
         [](ProfileFile& file) { return file.Write("NA", "Ogni", std::string(9000, '1')); },
         {"open", "fstat", "pread", "pwrite", "fstat", "close"}},
        {"a change that moves pages",
         SampleBytes(),
         [](ProfileFile& file) { return file.Write("General", "Com", "COM10"); },
         {"open", "fstat", "pread", "fallocate", "pwrite", "fstat", "close"}},
        {"a change inside one page",
         "[General]\r\nCom=COM1\r\n[Siti]\r\n",
         [](ProfileFile& file) { return file.Write("General", "Com", "COM10"); },
         {"open", "fstat", "pread", "pwrite", "fstat", "close"}},
        {"a shorter file",
         SampleBytes(),
         [](ProfileFile& file) { return file.DeleteSection("CC"); },
         {"open", "fstat", "pread", "pwrite", "ftruncate", "fstat", "close"}},
    };
    for (const Cost& cost : costs) {
        Probed probed(cost.bytes);
        probed.Trust();

        EXPECT_TRUE(cost.run(*probed.profile)) << cost.name;

        EXPECT_EQ(probed.calls.Made(), cost.calls) << cost.name;
    }
}

TEST(ProfileFileCost, AYoungFileIsComparedEachTimeAndAnAgedOneOnce)
{
    Probed probed(SampleBytes());
    probed.CallsOfARead();

    EXPECT_EQ(probed.CallsOfARead(), kCompared);
    probed.calls.LetFilesAge();
    EXPECT_EQ(probed.CallsOfARead(), kComparedAndFoundLocal);
    EXPECT_EQ(probed.CallsOfARead(), kTrusted);

    // Writing an equal value does not change the file, so the snapshot stays valid.
    EXPECT_TRUE(probed.profile->Write("General", "Com", "COM1"));
    EXPECT_EQ(probed.CallsOfARead(), kTrusted);

    // After a change another program may have written in the same tick.
    EXPECT_TRUE(probed.profile->Write("General", "Com", "COM2"));
    EXPECT_EQ(probed.CallsOfARead(), kComparedAndFoundLocal);
}

// Times in whole seconds may come from a file system that has no finer ones.
TEST(ProfileFileCost, AFileWithATimeInWholeSecondsIsComparedForTwoSeconds)
{
    Probed probed(SampleBytes());
    const std::array times = {timespec{1'000'000'000, 0}, timespec{1'000'000'000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, probed.file.Path().c_str(), times.data(), 0), 0);
    timespec clock = StatusOf(probed.file.Path()).st_ctim;
    clock.tv_sec += 1;
    probed.calls.SetFileClock(clock);
    probed.CallsOfARead();
    EXPECT_EQ(probed.CallsOfARead(), kCompared);

    clock.tv_sec += 2;
    probed.calls.SetFileClock(clock);
    probed.CallsOfARead();
    EXPECT_EQ(probed.CallsOfARead(), kTrusted);
}

TEST(ProfileFileCost, AFileOfAnotherMachineOrOfAnUnknownFileSystemIsComparedEachTime)
{
    constexpr std::uint32_t nfs = 0x6969;
    Probed remote(SampleBytes());
    remote.calls.SetFileSystemType(nfs);
    Probed unknown(SampleBytes());
    unknown.calls.FailAll("fstatfs", EIO);
    for (Probed* const probed : {&remote, &unknown}) {
        probed->Trust();
        EXPECT_EQ(probed->CallsOfARead(), kCompared);
    }
}

TEST(ProfileFileCost, OfAValueOfTheSameLengthOnlyWhatDiffersIsWritten)
{
    Probed probed(SampleBytes());

    EXPECT_TRUE(probed.profile->Write("General", "Com", "CAM1"));

    EXPECT_EQ(probed.calls.Written(), 1U);
}

TEST(ProfileFileCost, FlushSyncsTheDataOnceAndTheDirectoryOfANewFile)
{
    Probed probed;
    probed.profile->Flush();
    EXPECT_THAT(probed.calls.Made(), ElementsAre());
    EXPECT_TRUE(probed.profile->Write("Siti", "MI", "Milano"));
    probed.calls.ForgetMade();

    probed.profile->Flush();
    probed.profile->Flush();
    EXPECT_THAT(probed.calls.Made(), ElementsAre("open", "fdatasync", "open", "fsync", "close", "close"));

    EXPECT_TRUE(probed.profile->Write("Siti", "NA", "Napoli"));
    probed.calls.ForgetMade();
    probed.profile->Flush();
    EXPECT_THAT(probed.calls.Made(), ElementsAre("open", "fdatasync", "close"));
}

TEST(ProfileFileCost, FlushOfADeletedNewFileSyncsNothing)
{
    Probed probed;
    EXPECT_TRUE(probed.profile->Write("Siti", "MI", "Milano"));
    probed.file.Remove();
    probed.calls.ForgetMade();

    probed.profile->Flush();

    EXPECT_THAT(probed.calls.Made(), ElementsAre("open"));
}

TEST(ProfileFileCost, FlushContinuesWithoutADirectoryThatCannotBeOpened)
{
    Probed probed;
    EXPECT_TRUE(probed.profile->Write("Siti", "MI", "Milano"));
    probed.calls.ForgetMade();
    probed.calls.FailAt(2, EACCES);

    probed.profile->Flush();

    EXPECT_THAT(probed.calls.Made(), ElementsAre("open", "fdatasync", "open", "close"));
}

TEST(ProfileFileFailures, AFailedReadGivesTheFallbackAndTheNextOneTheValue)
{
    for (std::size_t number = 0; number < 5; ++number) {
        Probed probed(SampleBytes());
        probed.calls.FailAt(number, EIO);

        // The last call is close, after everything has been read.
        EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), number < 4 ? "none" : "COM1");
        EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), "COM1");
    }
}

// A change based on the truncated bytes would overwrite those after them.
TEST(ProfileFileFailures, AShortReadIsRepeatedBeforeAWrite)
{
    Probed probed(SampleBytes());
    probed.calls.ShortenAt(2, 10); // after open and fstat
    probed.calls.ShortenAt(3, 0);

    EXPECT_TRUE(probed.profile->Write("NA", "Ogni", "1"));

    EXPECT_EQ(probed.file.Bytes(), SampleBytes() + "\r\n[NA]\r\nOgni=1\r\n");
}

TEST(ProfileFileFailures, ShortReadsEachTimeAreAFailedWrite)
{
    Probed probed(SampleBytes());
    for (const std::size_t pread : {2U, 4U, 6U})
        probed.calls.ShortenAt(pread, 0);

    EXPECT_FALSE(probed.profile->Write("NA", "Ogni", "1"));

    EXPECT_EQ(probed.file.Bytes(), SampleBytes());
}

TEST(ProfileFileFailures, AFailedCloseIsAFailedWrite)
{
    Probed probed(SampleBytes());
    probed.calls.FailAll("close", EDQUOT);

    EXPECT_FALSE(probed.profile->Write("General", "Com", "COM2"));
    EXPECT_TRUE(probed.profile->Write("General", "Com", "COM2")); // already there: nothing to write
}

TEST(ProfileFileFailures, AFailedTruncationIsASuccessWithFiller)
{
    Probed probed("[General]\r\nCom=COM1\r\nLog=x\r\n");
    probed.calls.FailAll("ftruncate", EIO);

    EXPECT_TRUE(probed.profile->Write("General", "Com", ""));

    EXPECT_EQ(probed.file.Bytes(), "[General]\r\nCom=\r\nLog=x\r\n  \r\n");
    EXPECT_EQ(probed.profile->Read("General", "Log", "none", 100), "x");
}

TEST(ProfileFileFailures, AFailedReservationWritesNothing)
{
    for (const int error : {ENOSPC, EDQUOT, EFBIG, EIO}) {
        Probed probed(SampleBytes());
        probed.calls.FailAll("fallocate", error);

        EXPECT_FALSE(probed.profile->Write("General", "Com", "COM10"));

        EXPECT_EQ(std::ranges::count(probed.calls.Made(), "pwrite"), 0);
    }
}

TEST(ProfileFileFailures, AnUnsupportedReservationIsReplacedByFiller)
{
    for (const int error : {EOPNOTSUPP, ENOSYS, EINVAL}) {
        Probed probed(SampleBytes());
        probed.calls.FailAll("fallocate", error);
        probed.calls.FailFrom(5, EIO); // after open, fstat, pread, fallocate and the filler's pwrite

        EXPECT_FALSE(probed.profile->Write("General", "Com", "COM1234567"));

        EXPECT_EQ(probed.file.Bytes(), SampleBytes() + "    \r\n");
    }
}

TEST(ProfileFileOnDisk, ALinkStaysALink)
{
    SettingsFile target("[A]\r\nk=1\r\n");
    SettingsFile link;
    std::filesystem::create_symlink(target.Path(), link.Path());

    EXPECT_TRUE(link->Write("A", "k", "2"));

    EXPECT_TRUE(std::filesystem::is_symlink(link.Path()));
    EXPECT_EQ(target.Bytes(), "[A]\r\nk=2\r\n");
    EXPECT_EQ(link->Read("A", "k", "none", 100), "2");
}

TEST(ProfileFileOnDisk, ALinkToNothingCreatesItsTarget)
{
    SettingsFile target;
    SettingsFile link;
    std::filesystem::create_symlink(target.Path(), link.Path());

    EXPECT_TRUE(link->Write("A", "k", "1"));
    link->Flush();

    EXPECT_TRUE(std::filesystem::is_symlink(link.Path()));
    EXPECT_EQ(target.Bytes(), "[A]\r\nk=1\r\n");
}

TEST(ProfileFileOnDisk, ANewFileHasTheModeThatTheUmaskLeaves)
{
    SettingsFile file;
    const mode_t oldMask = ::umask(027);

    EXPECT_TRUE(file->Write("A", "k", "1"));

    ::umask(oldMask);
    EXPECT_EQ(StatusOf(file.Path()).st_mode & 07777U, 0640U);
}

TEST(ProfileFileOnDisk, IsWritableWhereItsFileOrOtherwiseItsDirectoryIs)
{
    Probed probed("[A]\r\n");
    EXPECT_TRUE(probed.profile->IsWritable());
    probed.calls.DenyWriting(EACCES);
    EXPECT_FALSE(probed.profile->IsWritable());

    const SettingsFile missing;
    EXPECT_TRUE(OpenProfileFile(missing.Path())->IsWritable());
    EXPECT_FALSE(OpenProfileFile(missing.Directory() / "missing" / "Corvrec.ini")->IsWritable());
    EXPECT_TRUE(OpenProfileFile("missing.ini")->IsWritable()); // in the current directory
}

TEST(ProfileFileOnDisk, AFifoIsNeitherReadNorWrittenNorWaitedFor)
{
    SettingsFile file;
    ASSERT_EQ(::mkfifo(file.Path().c_str(), 0600), 0);

    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");
    EXPECT_FALSE(file->Write("A", "k", "1"));
    EXPECT_FALSE(file->DeleteSection("A"));
}

TEST(ProfileFileOnDisk, ADeviceIsNeitherReadNorWritten)
{
    const auto file = OpenProfileFile("/dev/null");

    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");
    EXPECT_FALSE(file->Write("A", "k", "1"));
}

TEST(ProfileFileOnDisk, AFileThatDisappearsAfterItsFirstWriteIsCreatedAgain)
{
    SettingsFile file;
    EXPECT_TRUE(file->Write("A", "k", "1"));
    file.Remove();

    EXPECT_TRUE(file->Write("A", "k", "2"));

    file->Flush();
    EXPECT_EQ(file.Line("A", "k"), "k=2");
}

TEST(ProfileFileOnDisk, AFileReplacedByADirectoryReadsAsMissing)
{
    SettingsFile file("[A]\r\nk=1\r\n");
    EXPECT_EQ(file->Read("A", "k", "none", 100), "1");
    file.Remove();
    std::filesystem::create_directory(file.Path());

    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");
    EXPECT_FALSE(file->Write("A", "k", "2"));
}

TEST(ProfileFileOnDisk, ARestoredModificationTimeIsSeenThroughTheChangeTime)
{
    Probed probed("[General]\r\nCom=COM1\r\n");
    const struct stat before = StatusOf(probed.file.Path());
    probed.Trust();
    AwaitNextTick(probed.file);
    probed.file.Rewrite("[General]\r\nCom=COM2\r\n");
    const std::array times = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, probed.file.Path().c_str(), times.data(), 0), 0);

    EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), "COM2");
}

TEST(ProfileFileOnDisk, AFileThatChangesWhileItIsReadIsReadAgain)
{
    Probed probed("[General]\r\nCom=COM1\r\n");
    probed.calls.RewriteAt(3, probed.file.Path(), "[General]\r\nCom=COM10\r\n"); // between pread and fstat

    EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), "COM10");
    EXPECT_THAT(probed.calls.Made(),
                ElementsAre("stat", "open", "pread", "fstat", "pread", "fstat", "close"));
}

TEST(ProfileFileOnDisk, AFileThatKeepsChangingIsUsedAsLastSeenAndNotTrusted)
{
    Probed probed("[General]\r\nCom=1\r\n");
    probed.calls.LetFilesAge();
    probed.calls.RewriteAt(3, probed.file.Path(), "[General]\r\nCom=22\r\n");
    probed.calls.RewriteAt(5, probed.file.Path(), "[General]\r\nCom=333\r\n");
    probed.calls.RewriteAt(7, probed.file.Path(), "[General]\r\nCom=4444\r\n");

    EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), "333");
    EXPECT_EQ(probed.profile->Read("General", "Com", "none", 100), "4444");
}

TEST(ProfileFileOnDisk, AFileThatGrowsWhileItIsReadIsReadToItsEnd)
{
    const std::string longer = SampleBytes() + SampleBytes() + "\r\n[NA]\r\nOgni=1\r\n";
    Probed probed("[General]\r\nCom=COM1\r\n");
    probed.calls.RewriteAt(2, probed.file.Path(), longer); // between open and pread

    EXPECT_EQ(probed.profile->Read("NA", "Ogni", "none", 100), "1");
}

TEST(ProfileFileOnDisk, AFileTruncatedWhileItIsComparedIsReadAgain)
{
    const std::string beginning = "[A]\r\nk=1\r\n";
    Probed probed(beginning + "[B]\r\nk=1\r\n");
    probed.profile->Read("B", "k", "none", 100);
    probed.calls.ForgetMade();
    probed.calls.RewriteAt(2, probed.file.Path(), beginning); // between fstat and pread

    EXPECT_TRUE(probed.profile->Write("B", "k", "22"));

    EXPECT_EQ(probed.file.Bytes(), beginning + "[B]\r\nk=22\r\n");
}

TEST(ProfileFileOnDisk, AFileBeyond64MiBIsNeitherReadNorWritten)
{
    constexpr std::uintmax_t limit = 64U << 20;
    SettingsFile file("[A]\r\nk=1\r\n");
    std::filesystem::resize_file(file.Path(), limit + 1);

    EXPECT_EQ(file->Read("A", "k", "none", 100), "none");
    EXPECT_FALSE(file->Write("A", "k", "2"));
    EXPECT_FALSE(file->DeleteKey("A", "k"));
    EXPECT_EQ(std::filesystem::file_size(file.Path()), limit + 1);
}

TEST(ProfileFileOnDisk, AFileOf64MiBIsReadButDoesNotGrow)
{
    constexpr std::uintmax_t limit = 64U << 20;
    constexpr std::string_view end = "\n[A]\r\nk=1\r\n";
    SettingsFile file("");
    std::filesystem::resize_file(file.Path(), limit - end.size());
    std::ofstream(file.Path(), std::ios::binary | std::ios::app) << end;

    EXPECT_EQ(file->Read("A", "k", "none", 100), "1");
    EXPECT_FALSE(file->Write("A", "l", "2"));
    EXPECT_EQ(std::filesystem::file_size(file.Path()), limit);
    EXPECT_TRUE(file->Write("A", "k", "2"));
    EXPECT_EQ(file->Read("A", "k", "none", 100), "2");
}

} // namespace

} // namespace corvrec
