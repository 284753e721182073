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

// Ways to store the settings, each opened for one file. All do the same: list the names of the sites, read a
// value, save a whole site (34 keys, its line in "Siti", the log in "General"), remove a section. The round
// makes the values differ from the previous save's. The other libraries hold the whole file in memory and
// write it whole once per save.

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

// Reads only; every query is a pass over the file.
class InihStore
{
public:
    explicit InihStore(const SitesFile& file);
    std::size_t List();
    std::string Read(const std::string& section, const char* key);

private:
    std::string path_;
};

// The least work that any store must do. Reading: read the file and pass over its lines once; later, one stat
// and one look-up in a hash table. Saving: for each of the 36 lines, open, fstat, read the file, write from
// the line on, close. The lines are those of our save, in the middle of the file.
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
