#include "tests/bench/stores.h"

#include <QStringList>

#include <chrono>
#include <filesystem>
#include <ini.h>
#include <stdexcept>

namespace corvrec
{

namespace
{

// Room for the names of more than 10 000 sites.
constexpr std::size_t kAllNames = 1U << 20U;
constexpr std::size_t kValueSize = 100;

// Alternates between two lengths, so that a save moves everything after each line.
std::string Value(std::string_view value, int round)
{
    return std::string(value) + (round % 2 == 0 ? "" : "0");
}

void Check(bool done)
{
    if (!done)
        throw std::runtime_error("a store failed");
}

// Calls put(section, key, value) for each line that a save writes.
template <class Put>
void SaveBy(const std::string& code, int round, Put put)
{
    put("Siti", code.c_str(), Value("Sito", round));
    for (const auto& [key, value] : kSiteKeys)
        put(code.c_str(), key.data(), Value(value, round));
    put("General", "Log", Value("Corvrec.log", round));
}

} // namespace

OurStore::OurStore(const SitesFile& file)
    : file_(OpenProfileFile(file.Path()))
{
}

std::size_t OurStore::List()
{
    return file_->Keys("Siti", "", kAllNames).size();
}

std::string OurStore::Read(const std::string& section, const char* key)
{
    return file_->Read(section, key, "", kValueSize);
}

void OurStore::Save(const std::string& code, int round)
{
    SaveBy(code, round, [this](const char* section, const char* key, const std::string& value) {
        Check(file_->Write(section, key, value));
    });
}

void OurStore::DeleteSection(const std::string& section)
{
    Check(file_->DeleteSection(section));
}

namespace
{

// Gives the file another second each time: QSettings shares what it has read with the next object while the
// file's time stays the same.
QString Touched(const SitesFile& file)
{
    static std::chrono::seconds ahead{};
    std::filesystem::last_write_time(file.Path(), std::filesystem::file_time_type::clock::now() + ++ahead);
    return QString::fromStdString(file.Path());
}

} // namespace

QtStore::QtStore(const SitesFile& file)
    : settings_(Touched(file), QSettings::IniFormat)
{
}

std::size_t QtStore::List()
{
    settings_.beginGroup("Siti");
    const auto count = static_cast<std::size_t>(settings_.childKeys().size());
    settings_.endGroup();
    return count;
}

std::string QtStore::Read(const std::string& section, const char* key)
{
    return settings_.value(QString::fromStdString(section) + "/" + key).toString().toStdString();
}

void QtStore::Save(const std::string& code, int round)
{
    SaveBy(code, round, [this](const char* section, const char* key, const std::string& value) {
        settings_.setValue(QString(section) + "/" + key, QString::fromStdString(value));
    });
    settings_.sync();
    Check(settings_.status() == QSettings::NoError);
}

void QtStore::DeleteSection(const std::string& section)
{
    settings_.remove(QString::fromStdString(section));
    settings_.sync();
}

GlibStore::GlibStore(const SitesFile& file)
    : path_(file.Path())
{
    Check(g_key_file_load_from_file(file_.get(), path_.c_str(), G_KEY_FILE_KEEP_COMMENTS, nullptr) == TRUE);
}

std::size_t GlibStore::List()
{
    gsize count = 0;
    g_strfreev(g_key_file_get_keys(file_.get(), "Siti", &count, nullptr));
    return count;
}

std::string GlibStore::Read(const std::string& section, const char* key)
{
    char* const value = g_key_file_get_value(file_.get(), section.c_str(), key, nullptr);
    std::string text(value == nullptr ? "" : value);
    g_free(value);
    return text;
}

void GlibStore::Save(const std::string& code, int round)
{
    SaveBy(code, round, [this](const char* section, const char* key, const std::string& value) {
        g_key_file_set_value(file_.get(), section, key, value.c_str());
    });
    Write();
}

void GlibStore::DeleteSection(const std::string& section)
{
    Check(g_key_file_remove_group(file_.get(), section.c_str(), nullptr) == TRUE);
    Write();
}

void GlibStore::Write()
{
    Check(g_key_file_save_to_file(file_.get(), path_.c_str(), nullptr) == TRUE);
}

SimpleIniStore::SimpleIniStore(const SitesFile& file)
    : path_(file.Path())
{
    Check(file_.LoadFile(path_.c_str()) == SI_OK);
}

std::size_t SimpleIniStore::List()
{
    CSimpleIniA::TNamesDepend names;
    file_.GetAllKeys("Siti", names);
    return names.size();
}

std::string SimpleIniStore::Read(const std::string& section, const char* key)
{
    return file_.GetValue(section.c_str(), key, "");
}

void SimpleIniStore::Save(const std::string& code, int round)
{
    SaveBy(code, round, [this](const char* section, const char* key, const std::string& value) {
        Check(file_.SetValue(section, key, value.c_str()) >= 0);
    });
    Check(file_.SaveFile(path_.c_str(), false) == SI_OK);
}

void SimpleIniStore::DeleteSection(const std::string& section)
{
    Check(file_.Delete(section.c_str(), nullptr));
    Check(file_.SaveFile(path_.c_str(), false) == SI_OK);
}

InihStore::InihStore(const SitesFile& file)
    : path_(file.Path())
{
}

std::size_t InihStore::List()
{
    std::size_t count = 0;
    const auto take = [](void* user, const char* section, const char* /*name*/, const char* /*value*/) {
        *static_cast<std::size_t*>(user) += std::string_view(section) == "Siti" ? 1 : 0;
        return 1;
    };
    ini_parse(path_.c_str(), take, &count);
    return count;
}

std::string InihStore::Read(const std::string& section, const char* key)
{
    struct Question {
        const std::string& section;
        std::string_view key;
        std::string answer;
    } question{section, key, {}};
    const auto take = [](void* user, const char* in, const char* name, const char* value) {
        auto& asked = *static_cast<Question*>(user);
        if (asked.section == in && asked.key == name)
            asked.answer = value;
        return 1;
    };
    ini_parse(path_.c_str(), take, &question);
    return question.answer;
}

} // namespace corvrec
