// The version string shown by --version and written into every report.
#pragma once

inline constexpr const char* kSonalyxVersion = "0.7.1-beta";
