#include "folder_snapshot.h"

#include "support/temp_dir.h"

#include <filesystem>

FolderSnapshot snapshot_folder(const std::string& path) {
    namespace fs = std::filesystem;
    FolderSnapshot entries;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_symlink()) {
            entries[name] = "link to " + fs::read_symlink(entry.path()).string();
        } else if (entry.is_regular_file()) {
            entries[name] = read_text_file(entry.path().string());
        } else {
            entries[name] = "not a file";
        }
    }
    return entries;
}
