// A type-independent view of one resolved setting, so that tables of keys of different value
// types can be checked by one loop.
#pragma once

#include <string>
#include <vector>

#include "config/config.h"

struct ResolvedView {
    bool set = false;
    double value = 0.0; // booleans as 0/1, integers converted
    SettingSource source = SettingSource::builtin_default;
};

template <typename T> ResolvedView view_of(const Resolved<T>& r) {
    return {r.set, static_cast<double>(r.value), r.source};
}

using ResolvedGetter = ResolvedView (*)(const AnalysisConfig&);

#define RESOLVED_GETTER(section, key)                                                              \
    [](const AnalysisConfig& config) { return view_of(config.section.key); }

enum class KeyKind { number, integer, boolean };

// One analysis key of a scalar type, with its built-in default (before any sample-rate scaling).
struct ScalarKey {
    const char* section;
    const char* key;
    KeyKind kind;
    double builtin;
    bool has_default;
    ResolvedGetter get;
};

// Every number, integer and boolean analysis key.
const std::vector<ScalarKey>& scalar_keys();
