#include "cli/commands.h"

#include "cli/usage.h"

#include <cstdio>

std::optional<int> finish_scan(const ScanResult& scan) {
    switch (scan.status) {
    case ScanStatus::ok:
        return std::nullopt;
    case ScanStatus::help:
        print_usage(stdout);
        return 0;
    case ScanStatus::usage_error:
        std::fprintf(stderr, "%s\n", scan.message.c_str());
        print_usage(stderr);
        return 1;
    case ScanStatus::refused:
        std::fputs(scan.message.c_str(), stderr);
        return 1;
    }
    return 1;
}
