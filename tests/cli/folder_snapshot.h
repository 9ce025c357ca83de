// What a folder holds, for tests that a run changed nothing: every entry's name with the bytes of
// a file, the target of a symbolic link, or a mark for anything else. Sub-folders are not entered.
#pragma once

#include <map>
#include <string>

using FolderSnapshot = std::map<std::string, std::string>;

FolderSnapshot snapshot_folder(const std::string& path);
