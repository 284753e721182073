// Where the profile functions of Wine 8 differ from those of Windows. Not used on Windows itself.

#include "tests/support/wine.h"

#include <algorithm>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <memory>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

namespace
{

struct Difference {
    std::string_view wine; // what it does
    std::vector<std::string_view> tests;
};

// Tests by their own name, vectors by the name of the vector.
const std::vector<Difference>& Differences()
{
    static const std::vector<Difference> differences{
        {"A written value loses its leading blanks.",
         {"SiteKeys.OfTheSampleAreLoadedAndSavedAsAWhole", "SiteKeys.WithALeadingBlankAreSaved",
          "SaveSite.StopsAtXoffAfterXon", "Section.OtherControlCharactersPass",
          "ConversionVectors.WeekdayMask", "write: leading blank of a value stays",
          "write: leading blank of a new value stays", "write: value with outer space is written as it is",
          "write: value with outer tab is written as it is",
          "write: value with outer vertical tab is written as it is",
          "write: value with outer carriage return is written as it is",
          "write: value with outer line feed is written as it is", "sequence: save twice is stable",
          "sequence: changed by another program before a write", "sequence: file vanishes before a write"}},
        {"A write drops the blanks around all names and before all values, and any text after a header.",
         {"SaveSite.ChangesItsOwnKeysOfAnExistingFileAndNothingElse",
          "write: blanks before the equals sign stay", "write: header with text after the bracket stays",
          "write: indented header stays", "write: bytes outside the line never change",
          "list: list after additions and removals", "delete: key ignoring case", "delete: middle section",
          "sequence: remove a site", "sequence: add a site", "sequence: grow and shrink in place"}},
        {"A write ends every line with CR LF.",
         {"write: line feed line end stays", "write: carriage return line end stays",
          "write: new lines end with CR LF in a line feed file",
          "write: new key, unfinished last line elsewhere", "write: new section after line feed",
          "write: new section after carriage return", "delete: line feed file",
          "delete: carriage return file"}},
        {"A write drops blank lines.",
         {"RemoveSite.DeletesTheSectionAndTheKeyAndNothingElse", "write: new section after blank lines",
          "write: new key before trailing blank lines", "write: zero-filled tail: new key and new section",
          "write: control Z at the end", "delete: blank lines survive their section"}},
        {"A write cuts lines at a NUL.",
         {"write: new section, last line unfinished", "write: trailing NUL as an editor may leave it"}},
        {"A new key follows trailing comments and bare lines.",
         {"write: new comments follow the last key", "write: comments in place are kept",
          "write: new key before trailing comments", "write: new key in a section of comments",
          "write: new key before bare lines"}},
        {"Comments are deleted with their section.",
         {"delete: comments survive their section", "delete: comments between keys survive",
          "delete: section that holds the unfinished comment", "write: UTF-16 key and section deleted"}},
        {"A comment with an equals sign is a key.",
         {"read: comment with equals sign is no key", "read: space before a semicolon",
          "read: tab before a semicolon", "read: vertical tab before a semicolon",
          "write: comment key is written again each time", "delete: comment cannot be deleted as a key"}},
        {"A line without an equals sign is a key without a value.",
         {"write: new key with the name of a bare line", "delete: bare line cannot be deleted as a key"}},
        {"Lines before the first header belong to the section without a name.",
         {"read: empty key name", "read: keys before the first header cannot be read",
          "read: missing opening bracket", "write: empty section name", "delete: empty section name",
          "delete: section with text before the first header"}},
        {"The last closing bracket ends a header.",
         {"read: first closing bracket ends the name", "read: two headers on one line",
          "write: closing bracket in the section", "write: closing bracket: every write adds a section",
          "write: line break in the section"}},
        {"A line without a closing bracket is no header.",
         {"read: missing closing bracket", "read: missing closing bracket with equals sign",
          "write: header without closing bracket stays", "write: opening bracket in the key"}},
        {"A name to look up loses blanks and tabs at both ends.",
         {"read: section parameter keeps tabs", "read: key parameter keeps other blanks"}},
        {"A written name loses leading blanks and tabs, and keeps trailing ones.",
         {"write: section parameter loses spaces", "write: key parameter loses spaces",
          "write: section parameter keeps tab", "write: key parameter keeps tab",
          "write: section parameter keeps vertical tab", "write: key parameter keeps vertical tab",
          "write: section parameter keeps carriage return", "write: key parameter keeps carriage return",
          "write: section parameter keeps line feed", "write: key parameter keeps line feed",
          "delete: section parameter loses spaces"}},
        {"A value that differs from the old one only in blanks is not written.",
         {"write: same text with other blanks is written"}},
        {"Upper and lower case differ beyond ASCII.",
         {"read: CP1252 letters fold", "read: all folding pairs", "write: folding finds the existing key"}},
        {"The UTF-8 byte order mark is recognised, and stays before the first header.",
         {"read: UTF-8 mark spoils the first line only", "write: UTF-8 mark only",
          "write: UTF-8 mark before the header"}},
        {"Big endian UTF-16 is recognised.",
         {"read: UTF-16 big endian is not read", "write: UTF-16 big endian mark"}},
        {"No line end is written after a lone UTF-16 byte order mark.", {"write: UTF-16 mark only"}},
        {"A file of UTF-16 with an odd byte is written.", {"write: UTF-16 of odd length is left alone"}},
        {"The length of a value does not count modulo 65536.",
         {"read: value of 65536 characters", "read: value of 65537 characters"}},
        {"Names and values beyond 32 KiB are cut.",
         {"read: key name of 70000 characters", "write: large value"}},
        {"The quotes around a value are removed after it was cut.",
         {"read: quotes are removed before the cut"}},
        {"A default loses its quotes, or keeps a blank.",
         {"read: default of spaces only", "read: default keeps its quotes",
          "list: missing section gives the default"}},
        {"A list of which no byte fits, or whose first name is empty, gives the default.",
         {"list: exact fit rule", "list: empty key name is not listed"}},
        {"Erasing in a missing file does not create it.",
         {"delete: key in no file creates an empty file",
          "delete: section in no file creates an empty file"}},
    };
    return differences;
}

std::string NameOf(const testing::TestInfo& test)
{
    const std::string suite = test.test_suite_name();
    return suite.ends_with("/ProfileVectors") ? test.value_param() : suite + "." + test.name();
}

const Difference* FindDifference(const testing::TestInfo& test)
{
    const auto found =
        std::ranges::find_if(Differences(), [name = NameOf(test)](const Difference& difference) {
            return std::ranges::find(difference.tests, name) != difference.tests.end();
        });
    return found == Differences().end() ? nullptr : &*found;
}

// Expects the tests of the table to fail: one that passes does not belong there, and fails.
class InvertedResults final : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo& test) override
    {
        difference_ = FindDifference(test);
        if (difference_ != nullptr)
            kept_ = std::make_unique<Kept>();
    }

    void OnTestEnd(const testing::TestInfo& /*test*/) override
    {
        if (difference_ == nullptr)
            return;
        const bool isFailed = kept_->HasFailure();
        kept_.reset();
        EXPECT_TRUE(isFailed) << "Passed, although the table says of Wine: " << difference_->wine;
    }

    // Intercepts what a test reports while this object lives.
    class Kept
    {
    public:
        [[nodiscard]] bool HasFailure() const
        {
            for (int i = 0; i < results_.size(); ++i) {
                if (results_.GetTestPartResult(i).failed())
                    return true;
            }
            return false;
        }

    private:
        testing::TestPartResultArray results_;
        testing::ScopedFakeTestPartResultReporter reporter_{
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ALL_THREADS, &results_};
    };

    const Difference* difference_ = nullptr;
    std::unique_ptr<Kept> kept_;
};

[[maybe_unused]] const bool isTurnedRound = [] {
    if (IsWine())
        testing::UnitTest::GetInstance()->listeners().Append(new InvertedResults); // which owns it
    return IsWine();
}();

std::vector<std::string> NamesOfAllTests()
{
    std::vector<std::string> names;
    const auto& program = *testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        const auto& suite = *program.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j)
            names.push_back(NameOf(*suite.GetTestInfo(j)));
    }
    return names;
}

TEST(WineDifferences, NameExistingTests)
{
    const auto names = NamesOfAllTests();
    for (const Difference& difference : Differences()) {
        for (const std::string_view test : difference.tests)
            EXPECT_EQ(std::ranges::count(names, test), 1) << test;
    }
}

} // namespace

} // namespace corvrec
