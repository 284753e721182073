#pragma once

#include "core/file/profile_file.h"
#include "tests/bench/sites_file.h"

#include <QSettings>

#include <SimpleIni.h>
#include <cstddef>
#include <glib.h>
#include <memory>
#include <string>
#include <vector>

namespace corvrec
{

// One way to keep the settings, opened for one file. Each does the same: names of the sites, a value, a
// site's values, a save of all of a site (34 keys, its line in "Siti", the log in "General"; the round makes
// the values differ from those of the save before), the removal of a section. The peers hold the whole file
// and write it whole, once a save.

class OurStore
{
public:
    explicit OurStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);
    void Save(const std::string& code, int round);
    void DeleteSection(const std::string& section);

private:
    std::unique_ptr<ProfileFile> file_;
};

// Qt's INI files.
class QtStore
{
public:
    explicit QtStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);
    void Save(const std::string& code, int round);
    void DeleteSection(const std::string& section);

private:
    QSettings settings_;
};

// GLib's key files.
class GlibStore
{
public:
    explicit GlibStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);
    void Save(const std::string& code, int round);
    void DeleteSection(const std::string& section);

private:
    struct Free {
        void operator()(GKeyFile* file) const { g_key_file_free(file); }
    };
    void Write();

    std::string path_;
    std::unique_ptr<GKeyFile, Free> file_{g_key_file_new()};
};

class SimpleIniStore
{
public:
    explicit SimpleIniStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);
    void Save(const std::string& code, int round);
    void DeleteSection(const std::string& section);

private:
    std::string path_;
    CSimpleIniA file_;
};

// Reads only: each question is a pass over the file.
class InihStore
{
public:
    explicit InihStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);

private:
    std::string path_;
};

// What no store can do without. To read: one read of the file and one pass over its lines, and later a stat
// and a look into a hash table. To save: for each of the 36 lines open, fstat, a read of the file, a write
// from the line on, close. The same lines as a save of ours, in the middle of the file.
class Floor
{
public:
    explicit Floor(const SitesFile& file);
    ~Floor();
    Floor(const Floor&) = delete;
    Floor& operator=(const Floor&) = delete;
    std::size_t List();
    std::string Read(const std::string& section, const char* key);
    std::string ReadAgain(const std::string& section, const char* key);
    void Save(const std::string& code, int round);
    void DeleteSection(const std::string& section);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace corvrec
