// The files one run writes, put in place together or not at all. Every file is opened before the
// first one is written, so a folder that cannot take a new file is found before any work is lost;
// when any write fails, or any file cannot be put in place, none of the set is left behind and
// every file that was there before keeps its earlier contents.
#pragma once

#include "audio/file_replacement.h"

#include <list>
#include <string>

struct OutputSet {
    std::list<FileReplacement> files; // a list: each file keeps its address as more are opened
};

// Opens one more file of the set, to be written at `path`; null when its folder cannot take a
// new file.
FileReplacement* output_set_open(OutputSet& set, const std::string& path);

// Puts every file of the set in place, or none. On failure `failed_path` names the file that
// could not be written or put in place, and targets already replaced get their earlier contents
// back.
bool output_set_commit(OutputSet& set, std::string& failed_path);
