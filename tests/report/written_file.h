// Running a page or JSON writer into a real file for the report tests: the writer fills a new
// file and it is put in place when the writer succeeded; and a file on /dev/full, whose writes
// fail as on a full disk.
#pragma once

#include "audio/file_replacement.h"

#include <gtest/gtest.h>

#include <string>

template <typename Write> bool write_to_path(const std::string& path, Write write) {
    FileReplacement file;
    return replacement_open(path, file) && write(file) && replacement_commit(file);
}

// Opens `file` on /dev/full; false (and the calling test should skip) where there is none.
inline bool open_full_device(FileReplacement& file) {
    return replacement_open("/dev/full", file);
}
