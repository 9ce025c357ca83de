// Writing an output file all or nothing. The new contents go to a file that has no name yet, in
// the target's own folder, and take the target's name in one rename only once they are complete:
// a failed write (disk full, a file-size limit) or a killed process leaves the earlier file as it
// was and no partial file beside it. A symbolic link is followed: the file it points to is the one
// replaced, and the link stays. A target that exists but is no regular file (a device such as
// /dev/null, a FIFO) holds no earlier file to keep and must never be replaced by one, so it is
// written in place.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

struct FileReplacement;

// Closes and removes the new file; the target is left as it was. Safe to call more than once.
void replacement_abandon(FileReplacement& file);

// One file being written; abandoned when it goes out of scope uncommitted.
struct FileReplacement {
    std::string path;      // the path as the caller named it
    std::string target;    // the file it names, a symbolic link followed: replaced on commit
    std::string temp;      // its temporary name: given on commit, or at once where the folder
                           // cannot hold a nameless file
    int fd = -1;           // open for writing until committed or abandoned
    bool failed = false;   // a write failed: the commit will refuse
    bool unnamed = false;  // opened with O_TMPFILE: the file has no name until committed
    bool in_place = false; // a device or FIFO, written directly

    FileReplacement() = default;
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement() { replacement_abandon(*this); }
};

// Opens the new file beside `path` (a replacement not yet used). False when the folder cannot
// take a new file. Where the folder's file system cannot hold a nameless file (some network file
// systems), or when `allow_unnamed` is false, the file gets a temporary name at once; a killed
// process may then leave that temporary file behind, never a partial file at `path`.
bool replacement_open(const std::string& path, FileReplacement& file, bool allow_unnamed = true);

// Appends bytes; a short or failed write marks the replacement failed and returns false.
bool replacement_write(FileReplacement& file, std::span<const std::uint8_t> bytes);
bool replacement_write_text(FileReplacement& file, std::string_view text);

// Closes the file and gives it the target's name, replacing whatever held it. False (and nothing
// changed at the target) when any write failed or the file cannot be put in place.
bool replacement_commit(FileReplacement& file);

// The two steps of a commit, for putting several files in place together: sealing closes the
// finished file under its temporary name (false, and the file abandoned, when a write failed);
// placing renames it over the target.
bool replacement_seal(FileReplacement& file);
bool replacement_place(FileReplacement& file);

// The canonical form of an existing path (every link followed), or empty when it cannot be had.
std::string canonical_path(const std::string& path);

// Opens, writes `content` and commits in one call.
bool write_file_atomically(const std::string& path, std::string_view content);
