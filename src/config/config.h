// Configuration: reads the JSON-with-comments settings files (the --config override file and
// sonalyx-defaults.cfg) key by key as the settings table lists them, applies
// general.default_profile, resolves every setting with the source its value came from (command
// line, --config, defaults file, built-in or sample-rate default), resolves the alignment
// settings, validates the result, and produces the configuration card's rows.
#pragma once

#include "config/alignment_config.h"
#include "config/analysis_config.h"
#include "config/config_lookup.h"
#include "config/config_text.h"
#include "config/config_values.h"
#include "config/configuration_rows.h"
#include "config/default_profile.h"
#include "config/resolve_settings.h"
#include "config/setting_source.h"
#include "config/setting_table.h"
#include "config/setting_value.h"
#include "config/settings_files.h"
#include "config/spectral_profile.h"
#include "config/validate_config.h"
