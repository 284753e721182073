#pragma once

#include "core/site/site_record.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvrec
{

class SettingsFile;

// A site with every field filled, daily and by modem. It loads as it was saved, so a test can distinguish a
// change from a loss. Each test sets the fields that it checks.
SiteRecord SampleSite();

// A key and its value, as bytes of the file.
struct KeyValue {
    std::string key;
    std::string value;
};

// The key that a save writes last.
inline constexpr std::string_view kLastKey = "CharToDel";

// The section of SampleSite as SaveSite writes it on 3 March 2026, but with these values, in the order of a
// save. Throws std::out_of_range for a key that no save writes.
std::vector<KeyValue> SavedKeys(const std::vector<KeyValue>& changes = {});

// The same as lines that end with CR LF, without the section's header.
std::string SavedSite(const std::vector<KeyValue>& changes = {});

// The same for the site that EditorWindow::AddRoma fills in and OK saves: new, continuous, on 21 November
// 2026.
std::string SavedNewSite(const std::vector<KeyValue>& changes = {});

// What each control of the editor and its option dialogs shows of SampleSite, as "control: text" separated by
// "|". The name and the code are not the record's.
const char* ShownSite();

// Whether the site's section has every key that a save writes.
bool IsWhole(const SettingsFile& file, std::string_view code);

} // namespace corvrec
