// A scratch directory for one test, removed with everything in it when the object goes away,
// plus small whole-file read and write helpers.
#pragma once

#include <string>

class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    // `name` joined to the directory with a '/'.
    std::string file(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

bool write_text_file(const std::string& path, const std::string& content);
// The whole file as bytes; empty when it cannot be read.
std::string read_text_file(const std::string& path);
bool path_exists(const std::string& path);
// The number of entries in a folder (0 when it cannot be read).
std::size_t folder_entry_count(const std::string& path);
